#include "simulation/world/sample_form.h"

#include <algorithm>
#include <iterator>

#include "shell/forms/bindings.h"
#include "state/cycle_hot_key_preset.h"

namespace quillo::sim {
namespace {

using namespace forms;

Options fixed(std::vector<ControlOption> options) {
  return [options = std::move(options)] { return options; };
}

// The chord is one of the presets; its key tells which.
std::vector<ControlOption> presets() {
  std::vector<ControlOption> options;
  for (const CycleHotKeyPreset& preset : cycleHotKeyPresets) {
    // "⌃G" as its two keys.
    const std::string label(preset.label);
    const std::string control = "⌃";
    options.push_back(
        {std::to_string(preset.keyCode), control + " " + label.substr(control.size())});
  }
  return options;
}

}  // namespace

SampleForm::SampleForm(MacAppState& state) : state_(state), form_(describe()) {}

Description SampleForm::describe() {
  return {.title = "General", .sections = {dictation(), words(), you()}};
}

Section SampleForm::dictation() {
  return {.title = "Dictation",
          .rows = {
              {.id = "activationMode",
               .label = "Shortcut mode",
               .help = Text([this] {
                 return state_.activationMode.get() == "hold"
                            ? "Dictation lasts for as long as the keys are held."
                            : "Press once to start, and once more to stop.";
               }),
               .kind = Choice{bind(state_.activationMode),
                              fixed({{"toggle", "Toggle"}, {"hold", "Hold to talk"}})}},
              {.id = "cycle",
               .label = "Next writing profile",
               .kind = Shortcut{bindNumber(state_.cycleHotKeyKeyCode), presets}},
              {.id = "sounds",
               .label = "Play sounds",
               .help = "A short sound when a recording starts and when it ends.",
               .kind = Toggle{bind(state_.soundsEnabled)}},
              {.id = "noiseReduction",
               .label = "Noise reduction",
               .kind = Toggle{bind(state_.noiseReduction)}},
              {.id = "discreet",
               .label = "Discreet mode",
               .help = "Raises a quiet voice. Needs noise reduction.",
               .kind = Toggle{bind(state_.discreetMode)},
               .isEnabled = [this] { return state_.noiseReduction.get(); }},
              {.id = "level", .label = "Microphone", .kind = Level{[this](auto changed) {
                                                       return level_.observe(std::move(changed));
                                                     }}},
              {.id = "access",
               .kind = Note{"This app has Microphone, Accessibility, and Input Monitoring access.",
                            [] { return NoteTone::ready; }}},
          }};
}

Section SampleForm::words() {
  List vocabulary = listOf(state_.dictionaryVocabulary, {"term", "Term"},
                           [this](const std::string& term) { state_.addVocabularyTerm(term); });
  vocabulary.emptyText = "No terms yet";
  List rules = listOf(state_.dictionaryReplacements, {{"from", "Heard"}, {"to", "Written"}},
                      [this](const std::vector<std::string>& rule) {
                        state_.addReplacementRule(rule[0], rule[1]);
                      });
  rules.emptyText = "No rules yet";
  return {.title = "Words",
          .rows = {{.id = "vocabulary",
                    .label = "Vocabulary",
                    .help = "Names and terms that are spelled as you write them here.",
                    .kind = std::move(vocabulary)},
                   {.id = "rules", .label = "Replacement rules", .kind = std::move(rules)}}};
}

Section SampleForm::you() {
  return {.title = "You",
          .rows = {
              {.id = "name", .label = "Name", .kind = Field{bind(name_), "As it is to be written"}},
              {.id = "email",
               .label = "E-mail",
               .kind = Field{bind(email_), "you@example.org"},
               .error = Text([this] {
                 const std::string& email = email_.get();
                 const bool isGood = email.empty() || email.find('@') != std::string::npos;
                 return std::string(isGood ? "" : "An address has an @ in it.");
               })},
              {.id = "about",
               .label = "How you write",
               .kind = Field{bind(about_), "Short sentences, no jargon…", FieldStyle::lines},
               .isVisible = [this] { return !name_.get().empty(); }},
              {.id = "reset",
               .label = "Forget what stands here",
               .kind = Button{"Reset", [this] { reset(); }, ButtonStyle::destructive}}}};
}

void SampleForm::reset() {
  ++timesReset_;
  name_ = std::string();
  email_ = std::string();
  about_ = std::string();
}

}  // namespace quillo::sim
