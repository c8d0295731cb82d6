// The panel in which the user checks a translation before it is inserted.
#pragma once

#include <string>

#include "base/task.h"
#include "base/words.h"

namespace quillo {

struct ReviewRequest {
  std::string youSaid;
  Words youSaidLanguage;  // a label, as "German"
  std::string means;      // translated back; may be empty
  std::string willInsert;
  Words insertLanguage;  // a label
};

enum class ReviewDecision { insert, discard, reRecord };

// Main thread.
class ReviewPanel {
 public:
  virtual ~ReviewPanel() = default;
  // Waits for as long as the user does.
  virtual Task<ReviewDecision> present(ReviewRequest request) = 0;
};

}  // namespace quillo
