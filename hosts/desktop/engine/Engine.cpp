#include "hosts/desktop/engine/Engine.h"

#include <optional>

#include "hosts/desktop/engine/PictureProvider.h"
#include "hosts/device/session/SourceGuard.h"

namespace chatsum::desktop {

Engine::Engine(const EngineOptions& options, QSettings& settings, QObject* parent)
    : QObject(parent),
      dates_(options.fixedTime),
      device_(std::make_shared<OpenDevice>()),
      sources_(settings, dates_, !options.sampleFolder.empty()),
      library_(worker_, *device_, dates_, options),
      conversations_(dates_),
      filter_(conversations_),
      selection_(worker_),
      messages_(worker_, *device_, dates_),
      calls_(dates_) {
  connect(&sources_, &SourceList::openRequested, &library_, &Library::open);
  connect(&library_, &Library::deviceOpened, this, &Engine::showDevice);
  connect(&library_, &Library::deviceClosing, this, &Engine::leaveDevice);
  connect(&filter_, &ConversationFilter::conversationSelected, &messages_, &MessageModel::show);
  connect(&filter_, &ConversationFilter::conversationLeft, &messages_, &MessageModel::clear);
  connect(&messages_, &MessageModel::listChanged, this, &Engine::takeMessages);
  connect(&messages_, &MessageModel::hitsChanged, this, &Engine::takeHits);
  // The list of calls in front is the one that is shown.
  connect(&selection_, &Selection::appChanged, this, [this] {
    calls_.setApp(selection_.app());
    takeTicks();
  });
  connect(&selection_, &Selection::ticksChanged, this, [this](RowsOf list, int first, int last) {
    if (list == RowsOf::kMessages) {
      messages_.tellTicks(first, last);
    } else {
      calls_.tellTicks(first, last);
    }
  });
  messages_.setTicks(&selection_.ticks(RowsOf::kMessages));
  // Whether the source has the file; to look inside, those of an encrypted backup would all have to be decrypted.
  selection_.setCanDraw([place = device_](const std::string& path) {
    const device::DeviceSession* session = place->session();
    return !session || session->source().originalOfMessage(path).has_value();
  });
}

Engine::~Engine() {
  library_.close();
  worker_.stop();
  device_->close();
}

std::function<std::optional<device::StoreProblem>(const std::string& place)> Engine::sourceGuard() const {
  return [device = device_](const std::string& place) {
    const auto refuse = [&](const device::DeviceSource& source) {
      return device::refuseInSource(source.facts(), place);
    };
    return device->withSource(device->number(), refuse).value_or(std::nullopt);
  };
}

QQuickAsyncImageProvider* Engine::makePictureProvider() const { return new PictureProvider(device_); }

void Engine::showDevice() {
  const OpenedDevice& opened = library_.opened();
  conversations_.setItems(opened.conversations);
  calls_.setBook(opened.calls);
  // The rows live as long as the book they are in.
  using Rows = std::shared_ptr<const ReportRows>;
  selection_.setRows(RowsOf::kPhone, opened.calls ? Rows(opened.calls, &opened.calls->phone.rows) : nullptr);
  selection_.setRows(RowsOf::kFaceTime, opened.calls ? Rows(opened.calls, &opened.calls->facetime.rows) : nullptr);
  takeTicks();
  if (!library_.isSample()) sources_.remember(opened.facts, library_.holds());
}

void Engine::leaveDevice() {
  filter_.selectNone();
  filter_.setFilter({});
  messages_.clear();
  conversations_.setItems(nullptr);
  calls_.setBook(nullptr);
  selection_.setRows(RowsOf::kPhone, nullptr);
  selection_.setRows(RowsOf::kFaceTime, nullptr);
  selection_.setApp(QStringLiteral("messages"));
}

void Engine::takeMessages() {
  const auto& list = messages_.list();
  selection_.setRows(RowsOf::kMessages, list ? std::shared_ptr<const ReportRows>(list, &list->rows) : nullptr);
}

void Engine::takeHits() {
  const auto& hits = messages_.hitRows();
  // A search that is over leaves what was selected by it.
  const bool isOver = !messages_.hasSearch() && selection_.mode() == Selection::Mode::Hits;
  if (hits.empty() && isOver) return;
  if (hits.empty()) return selection_.setHits(std::nullopt, std::nullopt);
  selection_.setHits(hits.front(), hits.back());
}

void Engine::takeTicks() {
  const bool isFaceTime = calls_.app() == QStringLiteral("facetime");
  calls_.setTicks(&selection_.ticks(isFaceTime ? RowsOf::kFaceTime : RowsOf::kPhone));
}

}  // namespace chatsum::desktop
