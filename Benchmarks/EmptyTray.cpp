// A tray program that does nothing: what the toolkit alone takes of memory.
#include <QApplication>
#include <QIcon>
#include <QPixmap>
#include <QSystemTrayIcon>

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QPixmap picture(22, 22);
  picture.fill(Qt::black);
  QSystemTrayIcon icon{QIcon(picture)};
  icon.show();
  return QApplication::exec();
}
