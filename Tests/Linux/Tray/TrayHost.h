// A tray on the session bus: the list of items that programs register with, and the panel that shows them.
//
// It serves the bus on a thread and a connection of its own, as another process would.
// Threads: main thread only. Every call runs Qt's event loop until it is answered, and throws if it is not.
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QString>
#include <QThread>
#include <QVariant>
#include <memory>
#include <string>
#include <vector>

namespace qt {

// A line of a menu as the panel receives it.
struct ShownItem {
  int id = 0;
  QVariantMap properties;
  std::vector<ShownItem> children;

  [[nodiscard]] std::string title() const;
  [[nodiscard]] bool isSeparator() const;
  [[nodiscard]] bool isEnabled() const;
  [[nodiscard]] bool isChecked() const;
  // As in "Super+Control+Alt+D".
  [[nodiscard]] std::string shortcut() const;
};

class TrayHost {
 public:
  TrayHost();  // on the bus of the tests themselves
  explicit TrayHost(const std::string& busAddress);
  ~TrayHost();
  TrayHost(const TrayHost&) = delete;
  TrayHost& operator=(const TrayHost&) = delete;

  // Whether the only item has registered, and its properties.
  [[nodiscard]] bool hasItem() const;
  [[nodiscard]] QVariant itemProperty(const QString& name);
  void activateItem(int x, int y);

  void aboutToShow();
  [[nodiscard]] std::vector<ShownItem> items();
  // Grows each time the host is told to read the lines again.
  [[nodiscard]] unsigned menuRevision();
  void event(int id, const QString& name);

 private:
  class Registry;

  QDBusMessage call(const QString& path, const QString& interface, const QString& method,
                    const QVariantList& arguments);
  [[nodiscard]] QString menuPath();
  QDBusMessage layout();

  QString name_;
  QThread thread_;
  std::unique_ptr<Registry> registry_;
};

}  // namespace qt
