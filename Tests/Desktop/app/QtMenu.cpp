// A window with a Qt menu and a text field, which prints the field's text.
#include <QApplication>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenuBar>
#include <cstdio>

int main(int argc, char** argv) {
    const QApplication app(argc, argv);
    QMainWindow window;
    QLineEdit field;
    auto* const menu = window.menuBar()->addMenu(QStringLiteral("&Menu"));
    for (const char* item : {"One", "Two", "Three"}) menu->addAction(QString::fromLatin1(item));
    window.setCentralWidget(&field);
    QObject::connect(&field, &QLineEdit::textChanged, [](const QString& text) {
        std::printf("%s\n", text.toUtf8().constData());
        std::fflush(stdout);
    });
    window.setWindowTitle(QStringLiteral("QtMenu"));
    window.setGeometry(700, 250, 400, 200);
    window.show();
    field.setFocus();
    return QApplication::exec();
}
