#pragma once

#include <tessel/ValueAbstractValueCollectionConverter.h>

/// The layout of a collection, from the program's ini file. What the file does not mention is that of the library's
/// layouts.
tsl::ValueAbstractValueCollectionConverterLayout ReadLayout();
