// The toolkit's own window with one label, for bench/start.

#include <QApplication>
#include <QLabel>
#include <QPalette>
#include <QScreen>

int main(int count, char** arguments) {
    QApplication application(count, arguments);
    QLabel label(QStringLiteral("The first text"));
    QPalette palette;
    palette.setColor(QPalette::Window, QColor(26, 26, 26));
    palette.setColor(QPalette::WindowText, Qt::yellow);
    label.setPalette(palette);
    label.setAlignment(Qt::AlignCenter);
    label.setFixedSize(560, 200);
    label.move(label.screen()->availableGeometry().center() - label.rect().center());
    label.show();
    return QApplication::exec();
}
