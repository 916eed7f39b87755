#include "Platform/Qt/QtStart.h"

#include <errno.h>

#include <QLibraryInfo>
#include <QLocale>
#include <QPalette>
#include <QTranslator>
#include <clocale>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

namespace Kestrin {

namespace {

/// The process's arguments in the form that the toolkit keeps and changes; they live as long as it.
struct Arguments {
    Arguments() {
        std::ifstream file("/proc/self/cmdline", std::ios::binary);
        text.assign(std::istreambuf_iterator<char>(file), {});
        for (std::size_t start = 0; start < text.size(); start = text.find('\0', start) + 1)
            pointers.push_back(text.data() + start);
        if (pointers.empty())
            pointers.push_back(program_invocation_name);
        count = static_cast<int>(pointers.size());
        pointers.push_back(nullptr);
    }

    std::string text;
    std::vector<char*> pointers;
    int count = 0;
};

/// What the toolkit says while it connects. Its last word before giving up is replaced by ours, and
/// the abort with a core file by an ordinary end.
void HandleStartMessage(QtMsgType type, const QMessageLogContext&, const QString& text) {
    if (type != QtFatalMsg)
        return;
    std::fprintf(
        stderr,
        "%s: no display to open a window on.\n"
        "Start it from a graphical session, or set DISPLAY or WAYLAND_DISPLAY to a display\n"
        "that this user may use. The window system's part says:\n%s\n",
        program_invocation_short_name, qPrintable(text));
    std::fflush(nullptr);
    std::_Exit(EXIT_FAILURE);
}

/// In the toolkit's own words, such as those of a text field's menu. What the program draws itself
/// is arranged from left to right in every language, so these are, too.
void SpeakTheUsersLanguage(EventApplication& application) {
    auto* words = new QTranslator(&application);
    const QString folder = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
    if (words->load(QLocale(), QStringLiteral("qtbase"), QStringLiteral("_"), folder))
        QApplication::installTranslator(words);
    QApplication::setLayoutDirection(Qt::LeftToRight);
}

/// The relative luminance of WCAG 2.1.
double LuminanceOf(const QColor& color) {
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

/// Many a desktop's mark behind chosen text is too bright to read the text on it: it is darkened
/// until the contrast is 4.5 : 1. Dark text on a bright mark is left.
void MakeMarkedTextReadable() {
    constexpr int kStep = 105; // per cent
    QPalette palette = QApplication::palette();
    const double text = LuminanceOf(palette.color(QPalette::HighlightedText));
    QColor mark = palette.color(QPalette::Highlight);
    if (text < LuminanceOf(mark))
        return;
    while (text + 0.05 < 4.5 * (LuminanceOf(mark) + 0.05) && mark.value() > 0)
        mark = mark.darker(kStep);
    palette.setColor(QPalette::Highlight, mark);
    QApplication::setPalette(palette);
}

} // namespace

bool EventApplication::notify(QObject* receiver, QEvent* event) {
    try {
        return QApplication::notify(receiver, event);
    } catch (...) {
        if (fFailure == nullptr)
            fFailure = std::current_exception();
        exit(EXIT_FAILURE);
        return true;
    }
}

std::exception_ptr EventApplication::TakeFailure() {
    return std::exchange(fFailure, nullptr);
}

std::unique_ptr<EventApplication> StartToolkit() {
    static Arguments arguments;
    QApplication::setHighDpiScaleFactorRoundingPolicy(
        Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
    const QtMessageHandler usual = qInstallMessageHandler(HandleStartMessage);
    auto application =
        std::make_unique<EventApplication>(arguments.count, arguments.pointers.data());
    qInstallMessageHandler(usual);
    SpeakTheUsersLanguage(*application);
    QApplication::setQuitOnLastWindowClosed(false);
    MakeMarkedTextReadable();
    // The toolkit takes the user's locale for everything; numbers in files keep their point.
    std::setlocale(LC_NUMERIC, "C");
    return application;
}

} // namespace Kestrin
