#include "views/status_model.h"

namespace quillo::views {

StatusModel::StatusModel(MacDictationHUDView& view, const Catalog& catalog)
    : ContentModel(view, catalog),
      view_(view),
      contentChanges_(view.observe([this](const auto&) { Q_EMIT changed(); })),
      levelChanges_(view.observeLevel([this](float level) {
        level_ = level;
        Q_EMIT levelChanged();
      })) {}

StatusModel::StateColor StatusModel::color() const {
  switch (content().color) {
    case quillo::StateColor::red:
      return Red;
    case quillo::StateColor::orange:
      return Orange;
    case quillo::StateColor::accent:
      break;
  }
  return Accent;
}

}  // namespace quillo::views
