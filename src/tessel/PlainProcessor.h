#pragma once

#include <tessel/Export.h>
#include <tessel/MessageProcessor.h>

namespace tsl
{

/// The base of a processor that has nothing to configure, open or close. A derived class only implements Process.
///
///     class Printer : public tsl::PlainProcessor
///     {
///     public:
///         void Process(tsl::Message const & oMessage, tsl::Result &) const override;
///     };
///
/// A bus does not own it. Any thread may call the operations of this class; the derived class says which may call
/// Process.
class TSL_EXPORT PlainProcessor : public MessageProcessor
{
public:
    /// A configuration without message types, which all plain processors share.
    MessageProcessorConfig const & GetConfig() const override;

    /// Ignores the configuration and succeeds.
    [[nodiscard]] Result SetConfig(MessageProcessorConfig const & oConfig) override;

    /// Succeeds.
    [[nodiscard]] Result Open() override;
    void Close() override {}

protected:
    void DoCopy(Root const &) override {}
};

} // namespace tsl
