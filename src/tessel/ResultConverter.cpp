#include <tessel/ResultConverter.h>

#include "LastingObject.h"
#include "LayoutFormat.h"

#include "ValueCast.h"

namespace tsl
{

ClassDescription const & ResultConverterLayout::GetClassDesc() const
{
    return GetStaticClassDesc();
}

ClassDescription const & ResultConverterLayout::GetStaticClassDesc()
{
    static ClassDescription const & oDescription = DescribeClass<ResultConverterLayout>(
        &ValueConverterLayout::GetStaticClassDesc(), ClassDescription::eConcrete, &CreateNew);
    return oDescription;
}

Root * ResultConverterLayout::CreateNew()
{
    return new ResultConverterLayout;
}

ResultConverterLayout::ResultConverterLayout()
    : ResultConverterLayout("Number=${No},Text=${Text},File=${File},Line=${Line}")
{
}

ResultConverterLayout::ResultConverterLayout(ValueString const & sFormat)
{
    DemandFormat(*this, sFormat, "ResultConverterLayout");
}

ClassDescription const & ResultConverter::GetClassDesc() const
{
    return GetStaticClassDesc();
}

ClassDescription const & ResultConverter::GetStaticClassDesc()
{
    static ClassDescription const & oDescription = DescribeClass<ResultConverter>(
        &ValueConverter::GetStaticClassDesc(), ClassDescription::eConcrete, &CreateNew);
    return oDescription;
}

Root * ResultConverter::CreateNew()
{
    return new ResultConverter;
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

    // An identifier that is not known stands for the empty text.
    return true;
}

Result ResultConverter::DoConvertReplacement(
    ValueString &, Value &, ValueConverterLayout const &, ValueString const &) const
{
    return MakeResult(ERR::eNotAllowed, "Not implemented");
}

} // namespace tsl
