#pragma once
// The importer's options as the settings in force give them (MAIN and GAMEBASE sections).

#include "import/ImportOptions.h"

namespace vd::import {

// From the settings globals of MAIN and GAMEBASE, read before.
ImportOptions importOptionsInForce();

} // namespace vd::import
