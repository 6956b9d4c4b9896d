#include "app/ui/card/cards.h"

namespace zelvane {

Cards::Cards(QWidget* parent, std::shared_ptr<ZelvaneStore> store,
             std::shared_ptr<ConnectionController> connection)
    : store_(std::move(store)),
      connection_(std::move(connection)),
      connectionCard_(parent, [this](CardAction action, bool ticked) { chosen(action, ticked); }),
      restoreCard_(parent, [this](CardAction action, bool ticked) { chosen(action, ticked); }) {}

void Cards::refresh(const ThemeSpec& theme, int width) {
  width_ = width;
  connectionCard_.setContent(connectionCard({.state = connection_->state(),
                                             .message = connection_->message(),
                                             .busy = connection_->busy(),
                                             .dismissed = connection_->cardDismissed()}),
                             theme, width);
  const auto& offers = store_->offers();
  restoreCard_.setContent(restoreCard({.pending = offers.pendingRestore().size(),
                                       .recent = offers.recentClosed().size(),
                                       .restoring = offers.restoring(),
                                       .message = offers.restoreMessage()}),
                          theme, width);
}

void Cards::place(int y) {
  for (auto* card : {&connectionCard_, &restoreCard_}) {
    card->setGeometry(0, y, width_, card->wantedHeight());
    y += card->wantedHeight();
  }
}

void Cards::chosen(CardAction action, bool ticked) {
  switch (action) {
    case CardAction::connect:
      return connection_->connect(/*loginItem=*/ticked);
    case CardAction::connectLater:
      connection_->setCardDismissed(true);
      return connection_->clearMessage();  // what is to be read keeps the card open
    case CardAction::lookAgain:
      return connection_->refresh();
    case CardAction::closeMessage:
      return connection_->clearMessage();
    case CardAction::restoreAll:
      return store_->offers().restoreReboot();
    case CardAction::dismissRestore:
      return store_->offers().dismissRestore();
    case CardAction::reopenRecent:
      return store_->offers().restoreRecent();
    case CardAction::dismissRecent:
      return store_->offers().dismissRecent();
  }
}

}  // namespace zelvane
