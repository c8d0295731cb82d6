// How another program answers for what it has copied.
#pragma once

namespace quillo::contracts {

enum class OwnerManner {
  prompt,
  slow,  // 200 ms before each answer
  late,  // says at once what it has, and makes each form in 1.2 s
  hung,  // no answer at all, but it stands
};

}  // namespace quillo::contracts
