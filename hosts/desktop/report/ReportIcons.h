// The small pictures of report files, handed from the library to QML as "image://report/KEY". Any thread.
#pragma once

#include <QHash>
#include <QImage>
#include <QString>
#include <memory>
#include <mutex>

#include "platform/interfaces/Artwork.h"

class QQmlImageProviderBase;

namespace chatsum::desktop {

class ReportIcons {
 public:
  /// The name under which QML knows the provider.
  static constexpr const char* kProvider = "report";

  /// Keeps the picture under the key, unless there is one already, and answers its url; empty without a picture.
  QString keep(const QString& key, const platform::UIImageRef& picture);
  /// A null image for a key that is not kept.
  [[nodiscard]] QImage image(const QString& key) const;

  /// A provider for a QML engine, which will own it. It keeps the icons alive.
  [[nodiscard]] static QQmlImageProviderBase* newProvider(std::shared_ptr<const ReportIcons> icons);

 private:
  mutable std::mutex mutex_;
  QHash<QString, QImage> images_;
};

}  // namespace chatsum::desktop
