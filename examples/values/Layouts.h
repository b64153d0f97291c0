#pragma once

#include <tessel/ValueAbstractValueCollectionConverter.h>

/// The layout of a collection, as the application's ini file has it. What the file does not mention stays as
/// the library has it.
tsl::ValueAbstractValueCollectionConverterLayout ReadLayout();
