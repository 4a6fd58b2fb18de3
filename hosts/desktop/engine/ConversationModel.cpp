#include "hosts/desktop/engine/ConversationModel.h"

#include <QStringList>
#include <QTextBoundaryFinder>
#include <utility>

#include "hosts/desktop/engine/DateWords.h"
#include "hosts/desktop/engine/Texts.h"

namespace chatsum::desktop {
namespace {

QString guidOf(const device::Conversation& conversation) {
  return conversation.guids.empty() ? QString() : shownText(conversation.guids.front());
}

QString membersOf(const device::Conversation& conversation) {
  QStringList members;
  for (const device::ConversationMember& member : conversation.members) {
    members.append(shownName(conversation.isGroup ? member.name : member.handle));
  }
  return joinedNames(members);
}

/// The first character of a word as people see it, accents and all.
QString firstCharacter(const QString& word) {
  QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, word);
  const qsizetype end = finder.toNextBoundary();
  return end > 0 ? word.left(end) : QString();
}

bool beginsWithLetter(const QString& word) {
  return !word.isEmpty() && (word.at(0).isLetter() || word.at(0).isHighSurrogate());
}

}  // namespace

QString initialsOf(const QString& name) {
  QString first, last;
  for (const QString& word : name.split(u' ', Qt::SkipEmptyParts)) {
    if (!beginsWithLetter(word)) continue;
    (first.isEmpty() ? first : last) = firstCharacter(word).toUpper();
  }
  return first + last;
}

ConversationModel::ConversationModel(const DateWords& dates, QObject* parent)
    : QAbstractListModel(parent), dates_(dates) {}

int ConversationModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() || !items_ ? 0 : static_cast<int>(items_->size());
}

QVariant ConversationModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) return {};
  const device::Conversation& conversation = item(index.row()).conversation;
  switch (role) {
    case GuidRole:
      return guidOf(conversation);
    case Qt::DisplayRole:
    case NameRole:
      return shownName(conversation.name);
    case MembersRole:
      return membersOf(conversation);
    case LastTextRole:
      return conversation.last ? dates_.shortDay(*conversation.last) : QString();
    case CountRole:
      return static_cast<qlonglong>(conversation.messages);
    case IsGroupRole:
      return conversation.isGroup;
    case InitialsRole:
      return initialsOf(shownName(conversation.name));
    default:
      return {};
  }
}

QHash<int, QByteArray> ConversationModel::roleNames() const {
  return {{GuidRole, "guid"},   {NameRole, "name"},       {MembersRole, "members"},  {LastTextRole, "lastText"},
          {CountRole, "count"}, {IsGroupRole, "isGroup"}, {InitialsRole, "initials"}};
}

void ConversationModel::setItems(std::shared_ptr<const ConversationItems> items) {
  beginResetModel();
  items_ = std::move(items);
  endResetModel();
}

int ConversationModel::rowOf(const QString& guid) const {
  for (int row = 0; row < rowCount(); ++row) {
    if (guidOf(item(row).conversation) == guid) return row;
  }
  return -1;
}

}  // namespace chatsum::desktop
