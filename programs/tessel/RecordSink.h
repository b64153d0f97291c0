#pragma once

#include "../shared/Output.h"
#include "LogRecord.h"

#include <memory>

/// Writes the selected records, one after the other.
class RecordSink
{
public:
    RecordSink() = default;
    RecordSink(RecordSink const &) = delete;
    RecordSink & operator=(RecordSink const &) = delete;
    virtual ~RecordSink() = default;

    enum class Extent
    {
        eWhole,
        eFirstPiece ///< more pieces of the text follow
    };

    /// A record, or the first piece of a long one.
    virtual void Begin(LogRecord const & oRecord, Extent eExtent) = 0;

    virtual void Continue(std::string_view sPiece) = 0;

    /// The record is complete.
    virtual void End() = 0;

    /// All records are complete.
    virtual void Finish() {}
};

enum class Form
{
    eText,
    eJson
};

/// Writes the records unchanged, with colours if wanted.
std::unique_ptr<RecordSink> MakeTextSink(Output & oOutput, bool bColours);

/// Writes each record as a line of JSON.
std::unique_ptr<RecordSink> MakeJsonSink(Output & oOutput);

/// Finish writes the number of records.
std::unique_ptr<RecordSink> MakeCountSink(Output & oOutput);

/// Finish writes the numbers of records of each kind, of each identifier and of each place of failure.
std::unique_ptr<RecordSink> MakeStatisticsSink(Output & oOutput, Form eForm);
