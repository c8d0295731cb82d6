// A form with a row of each kind over the program's settings, for pictures, scenarios and tests.
#pragma once

#include <cstddef>
#include <string>

#include "base/published.h"
#include "shell/forms/form.h"
#include "state/app_state.h"

namespace quillo::sim {

class SampleForm {
 public:
  // `state` outlives the form.
  explicit SampleForm(MacAppState& state);

  forms::Form& form() { return form_; }
  Published<float>& level() { return level_; }
  int timesReset() const { return timesReset_; }

 private:
  forms::Description describe();
  forms::Section dictation();
  forms::Section writing();
  forms::Section you();
  void reset();

  MacAppState& state_;
  Published<std::string> name_;
  Published<std::string> email_;
  Published<std::string> about_;
  Published<float> level_;
  int timesReset_ = 0;
  forms::Form form_;
};

}  // namespace quillo::sim
