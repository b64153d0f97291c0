#pragma once

#include <tessel/Message.h>

/// How far the work has come. Goes from the machine to the main thread.
class ProgressMessage : public tsl::Message
{
public:
    ProgressMessage() = default;
    ProgressMessage(int iDone, int iParts) : m_iDone(iDone), m_iParts(iParts) {}

    tsl::ClassDescription const & GetClassDesc() const override { return GetStaticClassDesc(); }
    static tsl::ClassDescription const & GetStaticClassDesc();
    static tsl::Root * CreateNew();

    std::unique_ptr<AbstractNamedValueConstIterator<tsl::Value>> GetConstIterator() const override;
    tsl::String & AddAsString(tsl::String & sText) const override;

    int GetDone() const { return m_iDone; }
    int GetParts() const { return m_iParts; }

protected:
    void DoCopy(tsl::Root const & oSource) override;

private:
    int m_iDone = 0;
    int m_iParts = 0;
};

/// Asks the machine to stop before the next part. Goes from the main thread to the machine.
class StopMessage : public tsl::Message
{
public:
    tsl::ClassDescription const & GetClassDesc() const override { return GetStaticClassDesc(); }
    static tsl::ClassDescription const & GetStaticClassDesc();
    static tsl::Root * CreateNew();

    std::unique_ptr<AbstractNamedValueConstIterator<tsl::Value>> GetConstIterator() const override;
    tsl::String & AddAsString(tsl::String & sText) const override { return sText << "stop"; }

protected:
    void DoCopy(tsl::Root const &) override {}
};
