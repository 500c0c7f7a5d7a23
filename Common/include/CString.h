// The text type of the product: UTF-16 code units in a wide string.
#pragma once

#include <string>

using CString = std::wstring;
