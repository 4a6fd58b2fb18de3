#include "hosts/desktop/report/DesktopAlert.h"

#include <QVariantMap>
#include <algorithm>
#include <utility>

namespace chatsum::desktop {
namespace {

QString nameOf(DesktopAlert::Style style) {
  switch (style) {
    case DesktopAlert::Style::kCancel:
      return QStringLiteral("cancel");
    case DesktopAlert::Style::kDestructive:
      return QStringLiteral("destructive");
    case DesktopAlert::Style::kDefault:
      break;
  }
  return QStringLiteral("default");
}

}  // namespace

DesktopAlert::DesktopAlert(QString title, QString message, bool isSheet, std::vector<Button> buttons)
    : title_(std::move(title)), message_(std::move(message)), isSheet_(isSheet), buttons_(std::move(buttons)) {}

QVariantList DesktopAlert::buttons() const {
  QVariantList list;
  for (const Button& button : buttons_) {
    list.append(QVariantMap{{QStringLiteral("title"), button.title}, {QStringLiteral("style"), nameOf(button.style)}});
  }
  return list;
}

int DesktopAlert::cancelIndex() const {
  const auto found = std::find_if(buttons_.begin(), buttons_.end(),
                                  [](const Button& button) { return button.style == Style::kCancel; });
  return found == buttons_.end() ? -1 : static_cast<int>(found - buttons_.begin());
}

}  // namespace chatsum::desktop
