// The settings of reports as rows of words. The file is read and written on a thread of its own; the rows follow.
// Main thread.
#pragma once

#include <QAbstractListModel>
#include <QString>
#include <QStringList>
#include <QThreadPool>
#include <string>
#include <vector>

namespace chatsum::desktop {

class SettingsModel : public QAbstractListModel {
  Q_OBJECT
  Q_PROPERTY(QString error READ error NOTIFY errorChanged)  ///< why the file was not read or written; one sentence
  Q_PROPERTY(bool busy READ isBusy NOTIFY busyChanged)

 public:
  enum Role {
    Key = Qt::UserRole + 1,
    Title,    ///< what it is
    About,    ///< what it is for, one sentence
    Kind,     ///< "switch" or "choice"
    Value,    ///< the word of the file: "yes", "pdf", "desc"
    Choices,  ///< a list of maps with `word` and `text`, of what can be chosen
  };
  Q_ENUM(Role)

  /// Settings of this home; absolute.
  explicit SettingsModel(std::string home, QObject* parent = nullptr);
  ~SettingsModel() override;

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QHash<int, QByteArray> roleNames() const override;
  [[nodiscard]] QString error() const { return error_; }
  [[nodiscard]] bool isBusy() const { return running_ > 0; }

  /// Reads the file again.
  Q_INVOKABLE void reload();
  /// Writes the word of a row; a word that means nothing for it is left alone.
  Q_INVOKABLE void set(int row, const QString& word);

 Q_SIGNALS:
  void errorChanged();
  void busyChanged();
  /// The file has changed.
  void written();

 private:
  struct Answer {
    QStringList words;  // one for each setting; empty after a failure
    QString error;
    bool isWritten = false;
  };
  template <class Work>
  void run(Work work);
  void take(const Answer& answer);

  std::string home_;
  QStringList words_;
  QString error_;
  int running_ = 0;
  QThreadPool thread_;  // last, so that its work ends first
};

}  // namespace chatsum::desktop
