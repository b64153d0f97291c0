// What the examples in comments use without showing it. Only declared: the examples are compiled, not run.

#include <tessel/StandardSupport.h>
#include <tessel/Tessel.h>

#include <patternmatcher/PatternMatcher.h>

#include <iostream>
#include <memory>
#include <unordered_map>

using namespace tsl;

class Alarm : public Described<Alarm, Message>
{
public:
    Alarm() = default;
    explicit Alarm(ValueString const & sText);
    std::unique_ptr<AbstractNamedValueConstIterator<Value>> GetConstIterator() const override;

    ValueString m_sText;

protected:
    void DoCopy(Root const & oSource) override;
};

class Printer : public PlainProcessor
{
public:
    void Process(Message const & oMessage, Result & oResult) const override;
};

class Counter : public MessageDispatcherClient
{
public:
    explicit Counter(MessageDispatcher & oDispatcher);
    void Process(Message const & oMessage, Result & oResult) const override;
    MessageProcessorConfig const & GetConfig() const override;
    Result SetConfig(MessageProcessorConfig const & oConfig) override;

protected:
    void DoCopy(Root const & oSource) override;
};

class Observer
{
public:
    void Invoke(int const & iEvent, bool & bResult);
    void HandlerDestruction() const;
};

class HelloConfig : public ConsoleApplicationConfig
{
};

class EvenLength : public Described<EvenLength, StringValidator>
{
};

class Clock : public TaskProcessor
{
public:
    Clock();
    int GetTaskID() const override;
    TaskTransitionList const & GetTaskTransitionList() const override;
};

class Ring : public Task
{
public:
    explicit Ring(TaskProcessor * pParent);
    int GetTaskID() const override;
    MessageFilter const & GetDefinedInputFilter() const override;
    int DoProcess() override;
};

class Table
{
};

void DoWork();

enum
{
    eClock,
    eRing,
    eLastTask
};

extern Alarm oAlarm;
extern CriticalSectionMutex m_oLock;
extern IniFile oFile;
extern Message & oMessage;
extern MessageDispatcher oBus;
extern Observer oObserver;
extern Printer oPrinter;
extern Result oResult;
extern Root & oObject;
extern Root * pObject;
extern String sName;
extern TaskContext oContext;
extern TaskProcessor * pMachine;
extern TaskTransitionList oTransitions;
extern TaskTransitionList m_oTransitions;
extern ValueAbstractValueCollection & oNumbers;
extern ValueDateTime oMoment;
extern ValueFloat32 oWidth;
extern ValueString sText;
extern bool bResult;
extern float fTotal;
extern float fValue;
extern int g_iCounter;
extern int iSeconds;
extern int iTotal;
extern int iValue;
