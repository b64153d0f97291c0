#include <tessel/Tessel.h>

#include <gtest/gtest.h>

#include <iterator>
#include <string>
#include <type_traits>
#include <utility>

// What a program may add to the library's classes without meeting what the library needs for itself. The file
// is compiled without optimisation, so that a constant whose address is taken must be defined somewhere.

namespace
{

/// Names of the program that one of the library's classes once had for itself.
enum OwnName
{
    Begin,
    AddToHistory,
    AppendText,
    Body,
    ContextThread,
    ConvertReplacements,
    CopyCollection,
    DemandBody,
    DemandFormat,
    FailForeignSource,
    FailNoCopy,
    FailNoFactory,
    FailNull,
    FailWithoutContext,
    FindText,
    FreeBody,
    GetLocalName,
    GetTaskStack,
    InitTask,
    InsertText,
    InstanceEx,
    IsInStep,
    IsLastOwner,
    Move,
    ReplaceText,
    RunEntry,
    RunProcess,
    RunStep,
    SetNewTask,
    Share,
    Step,
    StepScope,
    SwitchTask,
    TakeFirst,
    Text,
    TOLERANCE
};

/// The iterators, which have a Begin that all may use, are no tasks.
class TaskHeir : public tsl::FineTask, public tsl::TaskProcessor
{
public:
    static constexpr OwnName NAME = Begin;
};

/// A class derived from all that a program may derive from: a name is looked up in every base.
class Heir : public tsl::CmdLine,
             public tsl::CmdLineParser,
             public tsl::ConsoleApplication,
             public tsl::ConsoleApplicationConfig,
             public tsl::DateTime,
             public tsl::DebugMessage,
             public tsl::DebugMessageConstIterator,
             public tsl::DefaultMessageLayout,
             public tsl::DummyMessageIterator,
             public tsl::DummyMutex,
             public tsl::Duration,
             public tsl::Exception,
             public tsl::FineTask,
             public tsl::Float32Validator,
             public tsl::IniFile,
             public tsl::Int32Validator,
             public tsl::LibraryProxy,
             public tsl::MessageDispatcher,
             public tsl::MessageDispatcherClient,
             public tsl::MessageDispatcherClientConfig,
             public tsl::MessageDispatcherConfig,
             public tsl::MessageFilterAllMessages,
             public tsl::MessageFilterNoMessage,
             public tsl::MessageProcessorCreator,
             public tsl::MessageProcessorFactoryBase,
             public tsl::MessageProcessorFactoryCallBack,
             public tsl::NamedValue,
             public tsl::NamedValueConverter,
             public tsl::NamedValueConverterLayout,
             public tsl::PipeDebMessage,
             public tsl::ReaderWriterMutex,
             public tsl::RequestChannel,
             public tsl::Result,
             public tsl::ResultConstIterator,
             public tsl::ResultConverter,
             public tsl::ResultConverterLayout,
             public tsl::ResultMessage,
             public tsl::ResultMessageConstIterator,
             public tsl::Singleton<int>,
             public tsl::StaticObjectPtr<int>,
             public tsl::String,
             public tsl::StringFormator,
             public tsl::StringValidator,
             public tsl::TaskContextMessage,
             public tsl::TaskContextMessageConstIterator,
             public tsl::TaskContextThread,
             public tsl::TaskCreator,
             public tsl::TaskFactoryBase,
             public tsl::TaskFactoryCallBack,
             public tsl::TaskProcessor,
             public tsl::Thread,
             public tsl::TimeSpan,
             public tsl::ValueAbstractValueCollection,
             public tsl::ValueAbstractValueCollectionConverter,
             public tsl::ValueAbstractValueCollectionConverterLayout,
             public tsl::ValueDateTime,
             public tsl::ValueDateTimeConverter,
             public tsl::ValueDateTimeConverterLayout,
             public tsl::ValueFloat32,
             public tsl::ValueFloatConverter,
             public tsl::ValueFloatConverterLayout,
             public tsl::ValueFormator,
             public tsl::ValueInt32,
             public tsl::ValueIntegerConverter,
             public tsl::ValueIntegerConverterLayout,
             public tsl::ValueNull,
             public tsl::ValueNullConverter,
             public tsl::ValueNullConverterLayout,
             public tsl::ValueString,
             public tsl::ValueStringConverter,
             public tsl::ValueStringConverterLayout,
             public tsl::ValueValidator
{
public:
    static constexpr OwnName aNames[] = {AddToHistory, AppendText, Body, ContextThread, ConvertReplacements,
        CopyCollection, DemandBody, DemandFormat, FailForeignSource, FailNoCopy, FailNoFactory, FailNull,
        FailWithoutContext, FindText, FreeBody, GetLocalName, GetTaskStack, InitTask, InsertText, InstanceEx,
        IsInStep, IsLastOwner, Move, ReplaceText, RunEntry, RunProcess, RunStep, SetNewTask, Share, Step,
        StepScope, SwitchTask, TakeFirst, Text, TOLERANCE};
};

TEST(NamesOfADerivedClass, AreNotHiddenByWhatTheLibraryNeedsForItself)
{
    EXPECT_EQ(TaskHeir::NAME, 0);
    EXPECT_EQ(std::size(Heir::aNames), Heir::aNames[std::size(Heir::aNames) - 1]);
}

struct Constants
{
    static int const INT = 5;
    static unsigned int const UNSIGNED = 6;
    static char const CHAR = 'c';
};

TEST(TextAppending, NeedsNoDefinitionOfAConstant)
{
    tsl::String sText("t");
    sText << Constants::INT << Constants::UNSIGNED << Constants::CHAR;
    sText += Constants::INT;
    sText += Constants::UNSIGNED;
    sText += Constants::CHAR;
    EXPECT_EQ(sText + Constants::INT + Constants::UNSIGNED + Constants::CHAR, "t56c56c56c");
    EXPECT_TRUE((sText = Constants::CHAR) == Constants::CHAR);

    tsl::ValueString sValue("v");
    sValue << Constants::INT << Constants::CHAR;
    sValue += Constants::INT;
    sValue += Constants::CHAR;
    EXPECT_EQ(sValue + Constants::INT + Constants::CHAR, "v5c5c5c");
    EXPECT_TRUE((sValue = Constants::CHAR) == Constants::CHAR);
}

/// What an operator of the program returns.
struct Chosen
{
};

/// A text class of the program with operators of its own. Which are called is seen by what they return.
template<class Text>
class Own : public Text
{
    friend Chosen operator+(Own const &, char const *) { return {}; }
    friend Chosen operator+(Own const &, int) { return {}; }
    friend Chosen operator+(Own const &, Own const &) { return {}; }
    friend Chosen operator+(Text const &, Own const &) { return {}; }
    friend Chosen operator+(char const *, Own const &) { return {}; }
    friend Chosen operator+=(Own &, int) { return {}; }
    friend Chosen operator<<(Own &, char const *) { return {}; }
    friend Chosen operator==(Own const &, char const *) { return {}; }
    friend Chosen operator<(Own const &, Own const &) { return {}; }
};

template<class Text>
concept PrefersOwnOperators = requires(Text & sText, Own<Text> & sOwn)
{
    requires std::is_same_v<decltype(sOwn + "x"), Chosen>;
    requires std::is_same_v<decltype(Own<Text>() + "x"), Chosen>;
    requires std::is_same_v<decltype(sOwn + 5), Chosen>;
    requires std::is_same_v<decltype(sOwn + sOwn), Chosen>;
    requires std::is_same_v<decltype(sText + sOwn), Chosen>;
    requires std::is_same_v<decltype(Text() + sOwn), Chosen>;
    requires std::is_same_v<decltype("x" + sOwn), Chosen>;
    requires std::is_same_v<decltype(sOwn += 5), Chosen>;
    requires std::is_same_v<decltype(sOwn << "x"), Chosen>;
    requires std::is_same_v<decltype(sOwn == "x"), Chosen>;
    requires std::is_same_v<decltype(sOwn < sOwn), Chosen>;
};

static_assert(PrefersOwnOperators<tsl::String>);
static_assert(PrefersOwnOperators<tsl::ValueString>);

template<class Sum, class... Rights>
constexpr bool IsSum = (std::is_same_v<Sum, Rights> && ...);

// Sums of other texts stay what they are where the library's operators are seen without a class of its own.
using tsl::operator+;
static_assert(
    IsSum<tsl::String, decltype(tsl::String() + std::string()), decltype(std::string() + tsl::String()),
        decltype(tsl::String() + 'c'), decltype(tsl::String() + true), decltype(tsl::String() + short()),
        decltype(tsl::String() + 1u), decltype(tsl::String() + 1.0), decltype(tsl::String() + 1.0f),
        decltype(tsl::String() + std::declval<int *>()), decltype("x" + tsl::String())>);
static_assert(IsSum<tsl::ValueString, decltype(tsl::String() + tsl::ValueString()),
    decltype(tsl::ValueString() + tsl::String()), decltype(std::string() + tsl::ValueString()),
    decltype(tsl::ValueString() + nullptr), decltype(tsl::ValueString() + 1.0f),
    decltype("x" + tsl::ValueInt32()), decltype(tsl::String() + tsl::ValueFloat32()),
    decltype(tsl::ValueString() + tsl::ValueInt32())>);
static_assert(IsSum<std::string, decltype(std::string() + "x"), decltype("x" + std::string())>);
static_assert(IsSum<tsl::ValueFloat32, decltype(0 + tsl::ValueFloat32()), decltype(tsl::ValueFloat32() + 0)>);
static_assert(IsSum<int, decltype(0 + tsl::ValueInt32())>);

} // namespace
