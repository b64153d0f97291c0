#include <tessel/ResultConverter.h>

#include "LastingObject.h"
#include "LayoutFormat.h"

#include "ValueCast.h"

namespace tsl
{

template<>
constexpr ClassSource CLASS_SOURCE<ResultConverterLayout>{};
template<>
ClassDescription const & Described<ResultConverterLayout, ValueConverterLayout>::GetStaticClassDesc()
{
    return TesselDetails::DescriptionOf<Described>::Get();
}

// Out of line, so that only the library has the vtable and the type record of the class.
ResultConverterLayout::~ResultConverterLayout() = default;

ResultConverterLayout::ResultConverterLayout()
    : ResultConverterLayout("Number=${No},Text=${Text},File=${File},Line=${Line}")
{
}

ResultConverterLayout::ResultConverterLayout(ValueString const & sFormat)
{
    SetFormatOrFail(*this, sFormat, "ResultConverterLayout");
}

template<>
constexpr ClassSource CLASS_SOURCE<ResultConverter>{};
template<>
ClassDescription const & Described<ResultConverter, ValueConverter>::GetStaticClassDesc()
{
    return TesselDetails::DescriptionOf<Described>::Get();
}

ValueConverterLayout const & ResultConverter::GetDefaultLayout() const
{
    return LastingObject<ResultConverterLayout>();
}

bool ResultConverter::DoGetReplacement(Value const & oValue, ValueString const & sIdentifier,
    ValueString & sOut, ValueConverterLayout const &) const
{
    Result const & oResult = CastValue<Result const>(oValue);
    if (sIdentifier == "No")
        sOut << oResult.GetErrorCode();
    else if (sIdentifier == "Text")
    {
        if (!oResult.GetText().IsNull())
            sOut << oResult.GetText();
    }
    else if (sIdentifier == "Line")
        sOut << oResult.GetSourceLine();
    else if (sIdentifier == "File")
        sOut << oResult.GetSourceFile();

    // An unknown identifier gives the empty text.
    return true;
}

Result ResultConverter::DoConvertReplacement(
    ValueString &, Value &, ValueConverterLayout const &, ValueString const &) const
{
    return MakeResult(ERR::eNotAllowed, "Not implemented");
}

} // namespace tsl
