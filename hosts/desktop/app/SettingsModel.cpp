#include "hosts/desktop/app/SettingsModel.h"

#include <QCoreApplication>
#include <QVariantMap>
#include <utility>

#include "hosts/device/settings/SettingWords.h"
#include "hosts/device/settings/SettingsFile.h"
#include "libchatsum/ChatsumSettings/ChatsumSettings.h"

namespace chatsum::desktop {
namespace {

using device::Setting;

QString tr(const char* text) { return QCoreApplication::translate("Settings", text); }

QString titleOf(const Setting& setting) {
  if (setting.key == settings::kEnabled) return tr("Reports");
  if (setting.key == settings::kEnabledMessages) return tr("Reports of messages");
  if (setting.key == settings::kEnabledPhone) return tr("Reports of calls");
  return setting.kind == Setting::Kind::kFileFormat ? tr("Format") : tr("Order");
}

QString aboutOf(const Setting& setting) {
  if (setting.key == settings::kEnabled)
    return tr("For applications that ask whether to offer reports at all. This window does not ask.");
  if (setting.key == settings::kEnabledMessages) return tr("The same, for messages.");
  if (setting.key == settings::kEnabledPhone) return tr("The same, for calls.");
  return setting.kind == Setting::Kind::kFileFormat ? tr("What a new report is, until you choose otherwise.")
                                                    : tr("How a new report is sorted, until you choose otherwise.");
}

QVariantList choicesOf(Setting::Kind kind) {
  const auto choice = [](const char* word, const QString& text) {
    return QVariantMap{{QStringLiteral("word"), QString::fromUtf8(word)}, {QStringLiteral("text"), text}};
  };
  switch (kind) {
    case Setting::Kind::kSwitch:
      return {choice("yes", tr("On")), choice("no", tr("Off"))};
    case Setting::Kind::kFileFormat:
      return {choice("csv", QStringLiteral("CSV")), choice("pdf", QStringLiteral("PDF")), choice("text", tr("Text"))};
    case Setting::Kind::kSortOrder:
      break;
  }
  return {choice("asc", tr("Oldest first")), choice("desc", tr("Newest first"))};
}

QStringList wordsIn(const device::SettingsFile& file) {
  QStringList words;
  for (const Setting& setting : device::allSettings()) {
    words.append(QString::fromStdString(device::wordOfValue(setting, file.values()[setting.key])));
  }
  return words;
}

}  // namespace

SettingsModel::SettingsModel(std::string home, QObject* parent) : QAbstractListModel(parent), home_(std::move(home)) {
  thread_.setMaxThreadCount(1);  // one after the other, in the order they were asked for
  for (const Setting& setting : device::allSettings()) {
    words_.append(QString::fromStdString(device::wordOfValue(setting, chatsum::Value())));
  }
}

SettingsModel::~SettingsModel() { thread_.waitForDone(); }

int SettingsModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(device::allSettings().size());
}

QVariant SettingsModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  const Setting& setting = device::allSettings()[static_cast<std::size_t>(index.row())];
  switch (role) {
    case Key:
      return QString::fromUtf8(setting.key.data(), static_cast<qsizetype>(setting.key.size()));
    case Qt::DisplayRole:
    case Title:
      return titleOf(setting);
    case About:
      return aboutOf(setting);
    case Kind:
      return setting.kind == Setting::Kind::kSwitch ? QStringLiteral("switch") : QStringLiteral("choice");
    case Value:
      return words_.value(index.row());
    case Choices:
      return choicesOf(setting.kind);
    default:
      return {};
  }
}

QHash<int, QByteArray> SettingsModel::roleNames() const {
  return {{Key, "key"}, {Title, "title"}, {About, "about"}, {Kind, "kind"}, {Value, "value"}, {Choices, "choices"}};
}

void SettingsModel::reload() {
  run([home = home_] {
    Answer answer;
    const auto file = device::SettingsFile::read(home);
    if (file) {
      answer.words = wordsIn(file.value());
    } else {
      answer.error = QString::fromStdString(file.problem().sentence);
    }
    return answer;
  });
}

void SettingsModel::set(int row, const QString& word) {
  if (row < 0 || row >= rowCount()) return;
  const Setting& setting = device::allSettings()[static_cast<std::size_t>(row)];
  const auto value = device::valueOfWord(setting, word.toStdString());
  if (!value) return;
  run([home = home_, &setting, value = *value] {
    Answer answer;
    auto file = device::SettingsFile::read(home);
    if (!file) {
      answer.error = QString::fromStdString(file.problem().sentence);
      return answer;
    }
    if (const auto problem = file.value().write(setting.key, value)) {
      answer.error = QString::fromStdString(problem->sentence);
    } else {
      answer.isWritten = true;
    }
    answer.words = wordsIn(file.value());
    return answer;
  });
}

template <class Work>
void SettingsModel::run(Work work) {
  if (++running_ == 1) Q_EMIT busyChanged();
  thread_.start([this, work = std::move(work)] {
    const Answer answer = work();
    QMetaObject::invokeMethod(
        this, [this, answer] { take(answer); }, Qt::QueuedConnection);
  });
}

void SettingsModel::take(const Answer& answer) {
  if (error_ != answer.error) {
    error_ = answer.error;
    Q_EMIT errorChanged();
  }
  if (!answer.words.isEmpty()) words_ = answer.words;
  // Also after a failure: a switch that was moved has to go back.
  Q_EMIT dataChanged(index(0), index(rowCount() - 1), {Value});
  if (--running_ == 0) Q_EMIT busyChanged();
  if (answer.isWritten) Q_EMIT written();
}

}  // namespace chatsum::desktop
