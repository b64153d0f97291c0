#include "../TestMessages.h"

#include <tessel/GlobalApplicationIni.h>
#include <tessel/GlobalDebugSwitchRegistry.h>
#include <tessel/LogFileProcessor.h>
#include <tessel/Tessel.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include <cxxabi.h>

using namespace tsl;

namespace
{

/// Whether a class is abstract, and what its factory function makes.
enum EKind
{
    eConcrete,   ///< objects of the class
    eAbstract,   ///< nothing: the function of an abstract class fails an assertion
    eSingleton,  ///< there is no function
    eApplication ///< there is no function, and the class is abstract
};

std::size_t g_iClasses = 0;

EKind GetKind(ClassDescription const & oClass)
{
    if (!oClass.GetFactoryFunction())
        return oClass.IsAbstract() ? eApplication : eSingleton;
    try
    {
        std::unique_ptr<Root> const pObject(oClass.GetFactoryFunction()());
        EXPECT_EQ(&pObject->GetClassDesc(), &oClass);
        EXPECT_FALSE(oClass.IsAbstract());
        return eConcrete;
    }
    catch (Exception const & oException)
    {
        EXPECT_STREQ(oException.GetText(), "XAssertion. Expression \"false\" failed. \nInfo: \"Unknown\"");
        EXPECT_TRUE(oClass.IsAbstract());
        return eAbstract;
    }
}

template<class T>
std::string GetName()
{
    std::unique_ptr<char, void (*)(void *)> const pName(
        abi::__cxa_demangle(typeid(T).name(), nullptr, nullptr, nullptr), &std::free);
    std::string const sName = std::string("class ") + pName.get();

    // Of an alias one compiler writes the name, and the other what it stands for.
    return sName.substr(0, sName.find("Factory"));
}

template<class... Classes>
void Check(std::string const & sBase, EKind eKind)
{
    auto const fCheck = [&](ClassDescription const & oClass, std::string const & sName)
    {
        SCOPED_TRACE(sName);
        EXPECT_TRUE(std::string(oClass.GetClassName()).starts_with(sName)) << oClass.GetClassName();
        EXPECT_EQ(oClass.GetBaseClassName(), sBase);
        EXPECT_EQ(GetKind(oClass), eKind);
        EXPECT_EQ(ClassRepository::Instance().GetClassDescription(oClass.GetClassId()), &oClass);
        EXPECT_TRUE(std::string(oClass.GetFile()).starts_with("src/tessel/")) << oClass.GetFile();
    };
    (fCheck(Classes::GetStaticClassDesc(), GetName<Classes>()), ...);
    g_iClasses += sizeof...(Classes);
}

template<class Base, class... Classes>
void CheckBelow(EKind eKind)
{
    Check<Classes...>(GetName<Base>(), eKind);
}

} // namespace

TEST(ClassTable, HoldsForEveryClass)
{
    Check<Root>("<keine>", eAbstract);
    Check<Singleton<Application>, Singleton<GlobalApplicationIni>, Singleton<GlobalDebugSwitchRegistry>,
        Singleton<GlobalMessageDispatcher>, Singleton<MessageProcessorFactoryBase>,
        Singleton<TaskFactoryBase>>("<keine>", eSingleton);
    CheckBelow<Singleton<Application>, Application>(eApplication);
    CheckBelow<Application, ConsoleApplication>(eApplication);
    CheckBelow<Singleton<GlobalApplicationIni>, GlobalApplicationIni>(eSingleton);
    CheckBelow<Singleton<GlobalDebugSwitchRegistry>, GlobalDebugSwitchRegistry>(eSingleton);
    CheckBelow<Singleton<GlobalMessageDispatcher>, GlobalMessageDispatcher>(eSingleton);
    CheckBelow<Root, Configuration, Message, MessageProcessor, Value, ValueConverter, ValueConverterLayout,
        ValueFormator, ValueValidator>(eAbstract);
    CheckBelow<Root, StringFormator, StringValidator>(eConcrete);
    CheckBelow<Configuration, ApplicationConfig, MessageProcessorConfig>(eAbstract);
    CheckBelow<ApplicationConfig, ConsoleApplicationConfig>(eAbstract);
    CheckBelow<Message, DebugMessage, ResultMessage, TaskContextMessage>(eConcrete);
    CheckBelow<MessageProcessor, LogFileProcessor, MessageDispatcher>(eConcrete);
    CheckBelow<MessageProcessor, MessageDispatcherClient, MessageDispatcherClientConfig>(eAbstract);
    CheckBelow<MessageProcessorConfig, LogFileProcessorConfig, MessageDispatcherConfig>(eConcrete);
    CheckBelow<Value, ValueAbstractValueCollection>(eAbstract);
    CheckBelow<Value, NamedValue, Result, ValueDateTime, ValueFloat32, ValueInt32, ValueNull, ValueString>(
        eConcrete);
    CheckBelow<ValueConverter, NamedValueConverter, ResultConverter, ValueAbstractValueCollectionConverter,
        ValueDateTimeConverter, ValueFloatConverter, ValueIntegerConverter, ValueNullConverter,
        ValueStringConverter>(eConcrete);
    CheckBelow<ValueConverterLayout, ResultConverterLayout, ValueDateTimeConverterLayout,
        ValueFloatConverterLayout, ValueIntegerConverterLayout, ValueNullConverterLayout,
        ValueStringConverterLayout>(eConcrete);
    CheckBelow<ValueConverterLayout, ValueConverterLayoutCollection>(eAbstract);
    CheckBelow<ValueConverterLayoutCollection, NamedValueConverterLayout>(eConcrete);
    CheckBelow<ValueConverterLayoutCollection, ValueAbstractValueCollectionConverterLayout>(eAbstract);
    EXPECT_EQ(g_iClasses, 59u);
    EXPECT_EQ(ClassRepository::Instance().GetClassList().size(), 59u) << "there is a class without a row";
}

TEST(ClassRepository, ReportsEntriesThatAreLeftInIt)
{
    int iReports = 0;
    tsltest::BusListener const oListener(ResultMessage::GetStaticClassDesc().GetClassId(),
        [&](Message const & oMessage, Result &)
        {
            Result const & oReport = static_cast<ResultMessage const &>(oMessage).GetResult();
            iReports += oReport.GetErrorCode() == ERR::eInternal ? 1 : 0;
        });
    {
        ClassRepository oRepository;
        oRepository.Register(Root::GetStaticClassDesc());
    }
    EXPECT_EQ(iReports, 1);
}
