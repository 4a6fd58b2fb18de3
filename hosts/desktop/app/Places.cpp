#include "hosts/desktop/app/Places.h"

#include <QDir>
#include <QStandardPaths>

namespace chatsum::desktop {
namespace {

QString homeIn(const device::Containers& containers) {
  return QString::fromStdString(containers.find(device::kMessagesApplication)->second);
}

}  // namespace

Places placesFor(const QString& home) {
  const QString state = QStringLiteral("desktop.ini"), sample = QStringLiteral("/sample-device");
  if (!home.isEmpty()) {
    const QString folder = QDir::cleanPath(QDir::current().absoluteFilePath(home));
    return {.home = folder,
            .containers = {{std::string(device::kMessagesApplication), folder.toStdString()}},
            .sample = folder + sample,
            .windowState = folder + QLatin1Char('/') + state};
  }
  const QString data =
      QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/chatsum");
  const QString config = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
  const device::Containers containers = device::containersIn(data.toStdString());
  return {.home = homeIn(containers),
          .containers = containers,
          .sample = data + sample,
          .windowState = config + QStringLiteral("/chatsum/") + state};
}

}  // namespace chatsum::desktop
