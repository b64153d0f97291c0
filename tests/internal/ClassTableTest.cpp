#include <tessel/GlobalApplicationIni.h>
#include <tessel/GlobalDebugSwitchRegistry.h>
#include <tessel/LogFileProcessor.h>
#include <tessel/Tessel.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>

using namespace tsl;

namespace
{

/// What objects a class's description can make.
enum EFactory
{
    eMakes, ///< objects of the class
    eFails, ///< none: the function fails an assertion
    eNone   ///< none: there is no function
};

struct Row
{
    ClassDescription const & (*fDescription)();
    std::string sName;
    std::string sBase;
    bool bAbstract;
    EFactory eFactory;
};

// Every class with a description, by registered base.
Row const g_aRows[] = {
    {&Root::GetStaticClassDesc, "Root", "", true, eFails},
    {&Singleton<Application>::GetStaticClassDesc, "Singleton<tsl::Application>", "", false, eNone},
    {&Singleton<GlobalApplicationIni>::GetStaticClassDesc, "Singleton<tsl::GlobalApplicationIni>", "", false,
        eNone},
    {&Singleton<GlobalDebugSwitchRegistry>::GetStaticClassDesc, "Singleton<tsl::GlobalDebugSwitchRegistry>",
        "", false, eNone},
    {&Singleton<GlobalMessageDispatcher>::GetStaticClassDesc, "Singleton<tsl::GlobalMessageDispatcher>", "",
        false, eNone},
    {&Singleton<MessageProcessorFactoryBase>::GetStaticClassDesc, "Singleton<tsl::", "", false, eNone},

    {&Configuration::GetStaticClassDesc, "Configuration", "Root", true, eFails},
    {&Message::GetStaticClassDesc, "Message", "Root", true, eFails},
    {&MessageProcessor::GetStaticClassDesc, "MessageProcessor", "Root", true, eFails},
    {&StringFormator::GetStaticClassDesc, "StringFormator", "Root", false, eMakes},
    {&StringValidator::GetStaticClassDesc, "StringValidator", "Root", false, eMakes},
    {&Value::GetStaticClassDesc, "Value", "Root", true, eFails},
    {&ValueConverter::GetStaticClassDesc, "ValueConverter", "Root", true, eFails},
    {&ValueConverterLayout::GetStaticClassDesc, "ValueConverterLayout", "Root", true, eFails},
    {&ValueFormator::GetStaticClassDesc, "ValueFormator", "Root", true, eFails},
    {&ValueValidator::GetStaticClassDesc, "ValueValidator", "Root", true, eFails},

    {&ApplicationConfig::GetStaticClassDesc, "ApplicationConfig", "Configuration", true, eFails},
    {&MessageProcessorConfig::GetStaticClassDesc, "MessageProcessorConfig", "Configuration", true, eFails},
    {&ConsoleApplicationConfig::GetStaticClassDesc, "ConsoleApplicationConfig", "ApplicationConfig", true,
        eFails},

    {&Application::GetStaticClassDesc, "Application", "Singleton<tsl::Application>", true, eNone},
    {&ConsoleApplication::GetStaticClassDesc, "ConsoleApplication", "Application", true, eNone},
    {&GlobalApplicationIni::GetStaticClassDesc, "GlobalApplicationIni",
        "Singleton<tsl::GlobalApplicationIni>", false, eNone},
    {&GlobalDebugSwitchRegistry::GetStaticClassDesc, "GlobalDebugSwitchRegistry",
        "Singleton<tsl::GlobalDebugSwitchRegistry>", false, eNone},
    {&GlobalMessageDispatcher::GetStaticClassDesc, "GlobalMessageDispatcher",
        "Singleton<tsl::GlobalMessageDispatcher>", false, eNone},

    {&DebugMessage::GetStaticClassDesc, "DebugMessage", "Message", false, eMakes},
    {&ResultMessage::GetStaticClassDesc, "ResultMessage", "Message", false, eMakes},

    {&LogFileProcessor::GetStaticClassDesc, "LogFileProcessor", "MessageProcessor", false, eMakes},
    {&MessageDispatcher::GetStaticClassDesc, "MessageDispatcher", "MessageProcessor", false, eMakes},
    {&MessageDispatcherClient::GetStaticClassDesc, "MessageDispatcherClient", "MessageProcessor", true,
        eFails},
    {&MessageDispatcherClientConfig::GetStaticClassDesc, "MessageDispatcherClientConfig", "MessageProcessor",
        true, eFails},
    {&LogFileProcessorConfig::GetStaticClassDesc, "LogFileProcessorConfig", "MessageProcessorConfig", false,
        eMakes},
    {&MessageDispatcherConfig::GetStaticClassDesc, "MessageDispatcherConfig", "MessageProcessorConfig", false,
        eMakes},

    {&NamedValue::GetStaticClassDesc, "NamedValue", "Value", false, eMakes},
    {&Result::GetStaticClassDesc, "Result", "Value", false, eMakes},
    {&ValueAbstractValueCollection::GetStaticClassDesc, "ValueAbstractValueCollection", "Value", true,
        eFails},
    {&ValueDateTime::GetStaticClassDesc, "ValueDateTime", "Value", false, eMakes},
    {&ValueFloat32::GetStaticClassDesc, "ValueFloat32", "Value", false, eMakes},
    {&ValueInt32::GetStaticClassDesc, "ValueInt32", "Value", false, eMakes},
    {&ValueNull::GetStaticClassDesc, "ValueNull", "Value", false, eMakes},
    {&ValueString::GetStaticClassDesc, "ValueString", "Value", false, eMakes},

    {&NamedValueConverter::GetStaticClassDesc, "NamedValueConverter", "ValueConverter", false, eMakes},
    {&ResultConverter::GetStaticClassDesc, "ResultConverter", "ValueConverter", false, eMakes},
    {&ValueAbstractValueCollectionConverter::GetStaticClassDesc, "ValueAbstractValueCollectionConverter",
        "ValueConverter", false, eMakes},
    {&ValueDateTimeConverter::GetStaticClassDesc, "ValueDateTimeConverter", "ValueConverter", false, eMakes},
    {&ValueFloatConverter::GetStaticClassDesc, "ValueFloatConverter", "ValueConverter", false, eMakes},
    {&ValueIntegerConverter::GetStaticClassDesc, "ValueIntegerConverter", "ValueConverter", false, eMakes},
    {&ValueNullConverter::GetStaticClassDesc, "ValueNullConverter", "ValueConverter", false, eMakes},
    {&ValueStringConverter::GetStaticClassDesc, "ValueStringConverter", "ValueConverter", false, eMakes},

    {&ResultConverterLayout::GetStaticClassDesc, "ResultConverterLayout", "ValueConverterLayout", false,
        eMakes},
    {&ValueConverterLayoutCollection::GetStaticClassDesc, "ValueConverterLayoutCollection",
        "ValueConverterLayout", true, eFails},
    {&ValueDateTimeConverterLayout::GetStaticClassDesc, "ValueDateTimeConverterLayout",
        "ValueConverterLayout", false, eMakes},
    {&ValueFloatConverterLayout::GetStaticClassDesc, "ValueFloatConverterLayout", "ValueConverterLayout",
        false, eMakes},
    {&ValueIntegerConverterLayout::GetStaticClassDesc, "ValueIntegerConverterLayout", "ValueConverterLayout",
        false, eMakes},
    {&ValueNullConverterLayout::GetStaticClassDesc, "ValueNullConverterLayout", "ValueConverterLayout", false,
        eMakes},
    {&ValueStringConverterLayout::GetStaticClassDesc, "ValueStringConverterLayout", "ValueConverterLayout",
        false, eMakes},

    {&NamedValueConverterLayout::GetStaticClassDesc, "NamedValueConverterLayout",
        "ValueConverterLayoutCollection", false, eMakes},
    {&ValueAbstractValueCollectionConverterLayout::GetStaticClassDesc,
        "ValueAbstractValueCollectionConverterLayout", "ValueConverterLayoutCollection", true, eFails},
};

EFactory GetFactory(ClassDescription const & oClass)
{
    if (!oClass.GetFactoryFunction())
        return eNone;
    try
    {
        std::unique_ptr<Root> const pObject(oClass.GetFactoryFunction()());
        std::unique_ptr<Root> const pSame(ClassRepository::Instance().CreateNew(oClass.GetClassName()));
        EXPECT_TRUE(pObject->GetClassDesc() == oClass) << oClass.GetClassName();
        EXPECT_TRUE(pSame && pSame->GetClassDesc() == oClass) << oClass.GetClassName();
        return eMakes;
    }
    catch (Exception const & oException)
    {
        EXPECT_STREQ(oException.GetText(), "XAssertion. Expression \"false\" failed. \nInfo: \"Unknown\"");
        return eFails;
    }
}

} // namespace

TEST(ClassTable, HoldsForEveryClass)
{
    for (Row const & oRow : g_aRows)
    {
        ClassDescription const & oClass = oRow.fDescription();
        std::string const sName = oClass.GetClassName();
        EXPECT_EQ(sName.find("class tsl::" + oRow.sName), 0u) << sName;
        EXPECT_EQ(oClass.GetBaseClassName(), oRow.sBase.empty() ? "<keine>" : "class tsl::" + oRow.sBase)
            << sName;
        EXPECT_EQ(oClass.IsAbstract(), oRow.bAbstract) << sName;
        EXPECT_EQ(GetFactory(oClass), oRow.eFactory) << sName;
        EXPECT_EQ(ClassRepository::Instance().GetClassDescription(oClass.GetClassId()), &oClass) << sName;
        EXPECT_EQ(std::string(oClass.GetFile()).find("src/tessel/"), 0u) << oClass.GetFile();
    }
}
