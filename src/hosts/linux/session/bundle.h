// What the build says about the program.
#pragma once

#include "platform/application.h"

namespace quillo::linux_host {

// The path is that of the running executable.
BundleInformation bundleOfThisProgram();

}  // namespace quillo::linux_host
