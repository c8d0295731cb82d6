// Replacing a file as a whole.
#pragma once

#include <string_view>

#include "platform/file_path.h"

namespace quillo::linux_host {

enum class Durability {
  processCrash,  // survives the death of the program
  powerCut,      // on the medium before it counts; may wait for the disk
};

// Readers see the old or the new contents, never a mixture; the file is the user's alone. A link
// stays one: what it points at is replaced. False with errno when nothing was changed.
bool replaceFile(const FilePath& path, std::string_view bytes, Durability durability);

// Waits until the file and its name are on the medium.
void syncFile(const FilePath& path);

}  // namespace quillo::linux_host
