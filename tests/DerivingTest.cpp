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
int Begin, AddToHistory, AppendText, Body, ContextThread, ConvertReplacements, CopyCollection, DemandBody,
    DemandFormat, FailForeignSource, FailNoCopy, FailNoFactory, FailNull, FailWithoutContext, FindText,
    FreeBody, GetLocalName, GetTaskStack, InitTask, InsertText, InstanceEx, IsInStep, IsLastOwner, Move,
    ReplaceText, RunEntry, RunProcess, RunStep, SetNewTask, Share, Step, StepScope, SwitchTask, TakeFirst,
    Text, TOLERANCE;

template<class... Bases>
class Join : public Bases...
{
};

/// The iterators, which have a Begin that all may use, are no tasks.
class TaskHeir : public Join<tsl::FineTask, tsl::TaskProcessor>
{
public:
    static constexpr int const * NAME = &Begin;
};

/// A class derived from all that a program may derive from: a name is looked up in every base.
class Heir
    : public Join<tsl::CmdLine, tsl::CmdLineParser, tsl::ConsoleApplication, tsl::ConsoleApplicationConfig,
          tsl::DateTime, tsl::DebugMessage, tsl::DebugMessageConstIterator, tsl::DefaultMessageLayout,
          tsl::DummyMessageIterator, tsl::DummyMutex, tsl::Duration, tsl::Exception, tsl::FineTask,
          tsl::Float32Validator, tsl::IniFile, tsl::Int32Validator, tsl::LibraryProxy, tsl::MessageDispatcher,
          tsl::MessageDispatcherClient, tsl::MessageDispatcherClientConfig, tsl::MessageDispatcherConfig,
          tsl::MessageFilterAllMessages, tsl::MessageFilterNoMessage, tsl::MessageProcessorCreator,
          tsl::MessageProcessorFactoryBase, tsl::MessageProcessorFactoryCallBack, tsl::NamedValue,
          tsl::NamedValueConverter, tsl::NamedValueConverterLayout, tsl::PipeDebMessage,
          tsl::ReaderWriterMutex, tsl::RequestChannel, tsl::Result, tsl::ResultConstIterator,
          tsl::ResultConverter, tsl::ResultConverterLayout, tsl::ResultMessage,
          tsl::ResultMessageConstIterator, tsl::Singleton<int>, tsl::StaticObjectPtr<int>, tsl::String,
          tsl::StringFormator, tsl::StringValidator, tsl::TaskContextMessage,
          tsl::TaskContextMessageConstIterator, tsl::TaskContextThread, tsl::TaskCreator,
          tsl::TaskFactoryBase, tsl::TaskFactoryCallBack, tsl::TaskProcessor, tsl::Thread, tsl::TimeSpan,
          tsl::ValueAbstractValueCollection, tsl::ValueAbstractValueCollectionConverter,
          tsl::ValueAbstractValueCollectionConverterLayout, tsl::ValueDateTime, tsl::ValueDateTimeConverter,
          tsl::ValueDateTimeConverterLayout, tsl::ValueFloat32, tsl::ValueFloatConverter,
          tsl::ValueFloatConverterLayout, tsl::ValueFormator, tsl::ValueInt32, tsl::ValueIntegerConverter,
          tsl::ValueIntegerConverterLayout, tsl::ValueNull, tsl::ValueNullConverter,
          tsl::ValueNullConverterLayout, tsl::ValueString, tsl::ValueStringConverter,
          tsl::ValueStringConverterLayout, tsl::ValueValidator>
{
public:
    static constexpr int const * NAMES[] = {&AddToHistory, &AppendText, &Body, &ContextThread,
        &ConvertReplacements, &CopyCollection, &DemandBody, &DemandFormat, &FailForeignSource, &FailNoCopy,
        &FailNoFactory, &FailNull, &FailWithoutContext, &FindText, &FreeBody, &GetLocalName, &GetTaskStack,
        &InitTask, &InsertText, &InstanceEx, &IsInStep, &IsLastOwner, &Move, &ReplaceText, &RunEntry,
        &RunProcess, &RunStep, &SetNewTask, &Share, &Step, &StepScope, &SwitchTask, &TakeFirst, &Text,
        &TOLERANCE};
};

TEST(NamesOfADerivedClass, AreNotHiddenByWhatTheLibraryNeedsForItself)
{
    EXPECT_EQ(TaskHeir::NAME, &Begin);
    EXPECT_EQ(*std::rbegin(Heir::NAMES), &TOLERANCE);
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
