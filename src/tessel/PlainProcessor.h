#pragma once

#include <tessel/Export.h>
#include <tessel/MessageProcessor.h>

namespace tsl
{

/// Base of a processor that has nothing to configure, to open or to close: a derived class implements Process.
///
///     class Printer : public tsl::PlainProcessor
///     {
///     public:
///         void Process(tsl::Message const & oMessage, tsl::Result &) const override;
///     };
///
/// A bus does not own it. Which threads may use it is for the derived class to say; what is here any thread may call.
class TSL_EXPORT PlainProcessor : public MessageProcessor
{
public:
    /// A configuration without message types, which all processors of this kind share.
    MessageProcessorConfig const & GetConfig() const override;

    /// Takes nothing over, and succeeds.
    [[nodiscard]] Result SetConfig(MessageProcessorConfig const & oConfig) override;

    /// Succeeds.
    [[nodiscard]] Result Open() override;
    void Close() override {}

protected:
    void DoCopy(Root const &) override {}
};

} // namespace tsl
