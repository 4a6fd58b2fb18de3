// The pages of a PDF file for QML: their sizes as rows, and their pictures as "image://page/…". A thread of its own reads
// and draws, so neither a large file nor a full page holds the window up, and closing it never takes a document away from
// whoever still draws. Main thread only.
#pragma once

#include <QAbstractListModel>
#include <QSizeF>
#include <QString>
#include <memory>
#include <vector>

#include "hosts/desktop/engine/Cancellation.h"

class QQmlImageProviderBase;

namespace chatsum::desktop {

class PdfDrawing;

class PdfPagesModel final : public QAbstractListModel {
  Q_OBJECT
  /// The file was read, and is none that can be shown.
  Q_PROPERTY(bool isBroken READ isBroken NOTIFY isBrokenChanged)

 public:
  /// The name under which QML knows the provider of pictures.
  static constexpr const char* kProvider = "page";

  enum Role {
    kSizeRole = Qt::UserRole + 1,  // of the page, in points (1/72 inch)
    kPictureRole,                  // the url of its picture
  };

  explicit PdfPagesModel(QObject* parent = nullptr);
  ~PdfPagesModel() override;

  /// Shows the file from here on; its pages come soon.
  void open(const QString& path);
  void close();

  [[nodiscard]] bool isBroken() const { return isBroken_; }
  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

  /// A provider for a QML engine, which will own it.
  [[nodiscard]] QQmlImageProviderBase* newProvider() const;

 Q_SIGNALS:
  void isBrokenChanged();

 private:
  void take(std::vector<QSizeF> sizes);
  void setBroken(bool isBroken);

  std::shared_ptr<PdfDrawing> drawing_;
  std::vector<QSizeF> sizes_;
  int document_ = 0;  // which one is shown; part of each url, since another one's pictures may still be kept
  bool isBroken_ = false;
  Cancellation opening_;
};

}  // namespace chatsum::desktop
