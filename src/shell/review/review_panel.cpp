#include "shell/review/review_panel.h"

#include <utility>

#include "shell/panel_placement.h"

namespace quillo {
namespace {

constexpr Size initialSize{460, 10};

}  // namespace

MacReviewPanel::MacReviewPanel(MainThread& mainThread, Panels& panels, Screens& screens,
                               Application& application, const InsertionSettings& settings)
    : mainThread_(mainThread),
      panels_(panels),
      screens_(screens),
      application_(application),
      settings_(settings) {}

Task<ReviewDecision> MacReviewPanel::present(ReviewRequest request) {
  const Completion<Decision> decided(mainThread_);
  continuation_ = decided;
  open(std::move(request));
  co_return co_await decided;
}

void MacReviewPanel::open(ReviewRequest request) {
  panel_.reset();
  view_ = std::make_unique<MacReviewView>(mainThread_,
                                          MacReviewView::Fields{
                                              .youSaid = std::move(request.youSaid),
                                              .youSaidLanguage = std::move(request.youSaidLanguage),
                                              .means = std::move(request.means),
                                              .willInsert = std::move(request.willInsert),
                                              .insertLanguage = std::move(request.insertLanguage),
                                              .escInserts = settings_.escInserts,
                                              .onInsert = [this] { resolve(Decision::insert); },
                                              .onReRecord = [this] { resolve(Decision::reRecord); },
                                              .onDiscard = [this] { resolve(Decision::discard); },
                                          });
  panel_ = panels_.make({initialSize, PanelStyle::dialog}, *view_);
  panel_->setContentSize(panel_->fittingSize());
  center();
  application_.activateIgnoringOtherApps();
  panel_->makeKeyAndOrderFront();
}

void MacReviewPanel::center() {
  const auto screen = panelScreen(screens_);
  if (!screen) return;
  const Rect& visible = screen->visibleFrame;
  const Size size = panel_->frame().size;
  panel_->setFrameOrigin({visible.midX() - size.width / 2, visible.midY() - size.height / 2});
}

void MacReviewPanel::resolve(Decision decision) {
  const auto continuation = std::exchange(continuation_, std::nullopt);
  if (!continuation) return;
  panel_->orderOut();
  panel_.reset();
  continuation->deliver(decision);
}

}  // namespace quillo
