#pragma once

#include <tessel/ValueConverterLayout.h>

namespace tsl
{

/// Sets the format for a constructor. A format that SetFormat refuses is an assertion failure that names the
/// class.
void SetFormatOrFail(ValueConverterLayout & oLayout, ValueString const & sFormat, char const * sClassName);

} // namespace tsl
