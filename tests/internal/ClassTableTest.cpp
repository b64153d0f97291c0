#include <tessel/GlobalApplicationIni.h>
#include <tessel/GlobalDebugSwitchRegistry.h>
#include <tessel/LogFileProcessor.h>
#include <tessel/Tessel.h>

#include <gtest/gtest.h>

#include <iterator>
#include <memory>
#include <string>

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

template<class T>
constexpr ClassDescription const & (*Of)() = &T::GetStaticClassDesc;

struct Row
{
    ClassDescription const & (*fDescription)();
    std::string sName, sBase;
    EKind eKind;
};

// Every class with a description, by registered base.
Row const g_aRows[] = {{Of<Root>, "Root", "", eAbstract},
    {Of<Singleton<Application>>, "Singleton<tsl::Application>", "", eSingleton},
    {Of<Singleton<GlobalApplicationIni>>, "Singleton<tsl::GlobalApplicationIni>", "", eSingleton},
    {Of<Singleton<GlobalDebugSwitchRegistry>>, "Singleton<tsl::GlobalDebugSwitchRegistry>", "", eSingleton},
    {Of<Singleton<GlobalMessageDispatcher>>, "Singleton<tsl::GlobalMessageDispatcher>", "", eSingleton},
    // Of an alias one compiler writes the name, and the other what it stands for.
    {Of<Singleton<MessageProcessorFactoryBase>>, "Singleton<tsl::", "", eSingleton},
    {Of<Singleton<TaskFactoryBase>>, "Singleton<tsl::", "", eSingleton},
    {Of<Configuration>, "Configuration", "Root", eAbstract}, {Of<Message>, "Message", "Root", eAbstract},
    {Of<MessageProcessor>, "MessageProcessor", "Root", eAbstract},
    {Of<StringFormator>, "StringFormator", "Root", eConcrete},
    {Of<StringValidator>, "StringValidator", "Root", eConcrete}, {Of<Value>, "Value", "Root", eAbstract},
    {Of<ValueConverter>, "ValueConverter", "Root", eAbstract},
    {Of<ValueConverterLayout>, "ValueConverterLayout", "Root", eAbstract},
    {Of<ValueFormator>, "ValueFormator", "Root", eAbstract},
    {Of<ValueValidator>, "ValueValidator", "Root", eAbstract},
    {Of<ApplicationConfig>, "ApplicationConfig", "Configuration", eAbstract},
    {Of<MessageProcessorConfig>, "MessageProcessorConfig", "Configuration", eAbstract},
    {Of<ConsoleApplicationConfig>, "ConsoleApplicationConfig", "ApplicationConfig", eAbstract},
    {Of<Application>, "Application", "Singleton<tsl::Application>", eApplication},
    {Of<ConsoleApplication>, "ConsoleApplication", "Application", eApplication},
    {Of<GlobalApplicationIni>, "GlobalApplicationIni", "Singleton<tsl::GlobalApplicationIni>", eSingleton},
    {Of<GlobalDebugSwitchRegistry>, "GlobalDebugSwitchRegistry", "Singleton<tsl::GlobalDebugSwitchRegistry>",
        eSingleton},
    {Of<GlobalMessageDispatcher>, "GlobalMessageDispatcher", "Singleton<tsl::GlobalMessageDispatcher>",
        eSingleton},
    {Of<DebugMessage>, "DebugMessage", "Message", eConcrete},
    {Of<ResultMessage>, "ResultMessage", "Message", eConcrete},
    {Of<TaskContextMessage>, "TaskContextMessage", "Message", eConcrete},
    {Of<LogFileProcessor>, "LogFileProcessor", "MessageProcessor", eConcrete},
    {Of<MessageDispatcher>, "MessageDispatcher", "MessageProcessor", eConcrete},
    {Of<MessageDispatcherClient>, "MessageDispatcherClient", "MessageProcessor", eAbstract},
    {Of<MessageDispatcherClientConfig>, "MessageDispatcherClientConfig", "MessageProcessor", eAbstract},
    {Of<LogFileProcessorConfig>, "LogFileProcessorConfig", "MessageProcessorConfig", eConcrete},
    {Of<MessageDispatcherConfig>, "MessageDispatcherConfig", "MessageProcessorConfig", eConcrete},
    {Of<NamedValue>, "NamedValue", "Value", eConcrete}, {Of<Result>, "Result", "Value", eConcrete},
    {Of<ValueAbstractValueCollection>, "ValueAbstractValueCollection", "Value", eAbstract},
    {Of<ValueDateTime>, "ValueDateTime", "Value", eConcrete},
    {Of<ValueFloat32>, "ValueFloat32", "Value", eConcrete},
    {Of<ValueInt32>, "ValueInt32", "Value", eConcrete}, {Of<ValueNull>, "ValueNull", "Value", eConcrete},
    {Of<ValueString>, "ValueString", "Value", eConcrete},
    {Of<NamedValueConverter>, "NamedValueConverter", "ValueConverter", eConcrete},
    {Of<ResultConverter>, "ResultConverter", "ValueConverter", eConcrete},
    {Of<ValueAbstractValueCollectionConverter>, "ValueAbstractValueCollectionConverter", "ValueConverter",
        eConcrete},
    {Of<ValueDateTimeConverter>, "ValueDateTimeConverter", "ValueConverter", eConcrete},
    {Of<ValueFloatConverter>, "ValueFloatConverter", "ValueConverter", eConcrete},
    {Of<ValueIntegerConverter>, "ValueIntegerConverter", "ValueConverter", eConcrete},
    {Of<ValueNullConverter>, "ValueNullConverter", "ValueConverter", eConcrete},
    {Of<ValueStringConverter>, "ValueStringConverter", "ValueConverter", eConcrete},
    {Of<ResultConverterLayout>, "ResultConverterLayout", "ValueConverterLayout", eConcrete},
    {Of<ValueConverterLayoutCollection>, "ValueConverterLayoutCollection", "ValueConverterLayout", eAbstract},
    {Of<ValueDateTimeConverterLayout>, "ValueDateTimeConverterLayout", "ValueConverterLayout", eConcrete},
    {Of<ValueFloatConverterLayout>, "ValueFloatConverterLayout", "ValueConverterLayout", eConcrete},
    {Of<ValueIntegerConverterLayout>, "ValueIntegerConverterLayout", "ValueConverterLayout", eConcrete},
    {Of<ValueNullConverterLayout>, "ValueNullConverterLayout", "ValueConverterLayout", eConcrete},
    {Of<ValueStringConverterLayout>, "ValueStringConverterLayout", "ValueConverterLayout", eConcrete},
    {Of<NamedValueConverterLayout>, "NamedValueConverterLayout", "ValueConverterLayoutCollection", eConcrete},
    {&ValueAbstractValueCollectionConverterLayout::GetStaticClassDesc,
        "ValueAbstractValueCollectionConverterLayout", "ValueConverterLayoutCollection", eAbstract}};

EKind GetKind(ClassDescription const & oClass)
{
    if (!oClass.GetFactoryFunction())
        return oClass.IsAbstract() ? eApplication : eSingleton;
    try
    {
        std::unique_ptr<Root> const pObject(oClass.GetFactoryFunction()());
        std::unique_ptr<Root> const pSame(ClassRepository::Instance().CreateNew(oClass.GetClassName()));
        EXPECT_TRUE(pObject->GetClassDesc() == oClass && pSame && pSame->GetClassDesc() == oClass);
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

} // namespace

TEST(ClassTable, HoldsForEveryClass)
{
    for (auto const & [fDescription, sExpected, sBase, eKind] : g_aRows)
    {
        ClassDescription const & oClass = fDescription();
        std::string const sName = oClass.GetClassName();
        SCOPED_TRACE(sName);
        EXPECT_TRUE(sName.starts_with("class tsl::" + sExpected)) << sExpected;
        EXPECT_EQ(oClass.GetBaseClassName(), sBase.empty() ? "<keine>" : "class tsl::" + sBase);
        EXPECT_EQ(GetKind(oClass), eKind);
        EXPECT_EQ(ClassRepository::Instance().GetClassDescription(oClass.GetClassId()), &oClass);
        EXPECT_TRUE(std::string(oClass.GetFile()).starts_with("src/tessel/")) << oClass.GetFile();
    }
    EXPECT_EQ(std::size(g_aRows), 59u);
    EXPECT_EQ(ClassRepository::Instance().GetClassList().size(), 59u) << "there is a class without a row";
}
