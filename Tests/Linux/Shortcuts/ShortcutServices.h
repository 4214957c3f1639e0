// The services that give programs keys in Wayland sessions, as programs find them on a bus: KWin's and the desktop
// portal. They record what they are asked, and press keys when the test says so.
//
// Each serves the bus on a thread and a connection of its own, as another process would.
// Threads: main thread only. Failure: a name that is taken throws.
#pragma once

#include <QDBusConnection>
#include <QString>
#include <QThread>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace qt {

struct BusRequest {
  std::string method;
  std::string signature;  // of its arguments on the bus
  std::string text;       // what of the arguments a person would look at
  std::string sender;
  friend bool operator==(const BusRequest&, const BusRequest&) = default;
};

// A service on a connection of its own.
class ShortcutBus {
 public:
  ShortcutBus(const ShortcutBus&) = delete;
  ShortcutBus& operator=(const ShortcutBus&) = delete;

  // In the order of their arrival; all of them, or those of one method.
  [[nodiscard]] std::vector<BusRequest> requests(const std::string& method = {}) const;
  [[nodiscard]] std::vector<std::string> texts(const std::string& method) const;

 protected:
  class Object;

  ShortcutBus(const std::string& busAddress, std::unique_ptr<Object> object);
  ~ShortcutBus();
  [[nodiscard]] QDBusConnection connection() const { return QDBusConnection(name_); }
  void own(const std::string& name);
  void disown(const std::string& name);
  void setState(const std::function<void()>& change);

  std::unique_ptr<Object> object_;

 private:
  QString name_;
  QThread thread_;
};

// "org.kde.kglobalaccel", on the connection of "org.kde.KWin".
class KWinKeys final : public ShortcutBus {
 public:
  explicit KWinKeys(const std::string& busAddress, bool isKWin = true);

  void refuse(const std::string& action);
  void press(const std::string& action);
  // As when the user gives the action another key, or none (0), in the desktop's settings.
  void change(const std::string& action, int key);
  // As when KWin is replaced.
  void leave();
  void comeBack();

 private:
  class Service;
};

// "org.freedesktop.portal.Desktop" with the portal of shortcuts, or without it.
class Portal final : public ShortcutBus {
 public:
  // With the user who agrees quietly, the keys are given, but the response's code says that the request has failed, as
  // GNOME's does.
  enum class User { agrees, agreesQuietly, declines, agreesToOne, choosesNoKeys, waits };
  explicit Portal(const std::string& busAddress, User user = User::agrees, bool hasShortcuts = true);

  void press(const std::string& shortcut);
  // In the session of somebody else.
  void pressElsewhere(const std::string& shortcut);
  // The user who waited agrees.
  void answer();
  void closeSession();
  void leave();
  void comeBack();

 private:
  class Service;
};

}  // namespace qt
