#include "Platform/UI/NativeApplication.h"

#include "Platform/Qt/QtApplication.h"
#include "Platform/Qt/QtStart.h"
#include "Platform/Qt/QtText.h"
#include "Platform/Qt/QuitSignals.h"
#include "Platform/UI/NativeMenu.h"

#include <QEventLoop>
#include <QFileInfo>
#include <QFileOpenEvent>
#include <QIcon>
#include <QTimer>
#include <QUrl>
#include <chrono>
#include <exception>
#include <utility>

namespace Kestrin {

namespace {

/// Whether an argument names what is to be opened as an address rather than as a file.
bool IsAddress(const QString& argument) {
    return !QFileInfo::exists(argument) && QUrl(argument).scheme().size() > 1;
}

/// What a launch hands over to be opened.
struct Opening {
    std::vector<std::string> files;
    std::vector<std::string> addresses;
};

/// The arguments that the toolkit left over, less options: the desktop passes files and addresses
/// so.
Opening OpeningAtLaunch() {
    Opening opening;
    const QStringList arguments = QCoreApplication::arguments().mid(1);
    for (const QString& argument : arguments)
        if (!argument.isEmpty() && !argument.startsWith(QLatin1Char('-')))
            (IsAddress(argument) ? opening.addresses : opening.files).push_back(ToUtf8(argument));
    return opening;
}

/// Only a run of the loop makes the toolkit forget that it was to exit.
void ForgetExit() {
    QTimer::singleShot(0, qApp, [] { QCoreApplication::exit(); });
    QApplication::exec();
}

void DeliverOpening(NativeApplicationDelegate& delegate, const Opening& opening) {
    if (!opening.files.empty())
        delegate.OpenFiles(opening.files);
    if (!opening.addresses.empty())
        delegate.OpenURLs(opening.addresses);
}

} // namespace

/// The events of the toolkit's application object that are the program's business.
class ApplicationEvents : public QObject {
public:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (watched != qApp || fDelegate == nullptr)
            return false;
        if (event->type() == QEvent::FileOpen)
            return Open(static_cast<QFileOpenEvent&>(*event));
        if (event->type() == QEvent::Quit) {
            AskToQuit();
            return true;
        }
        return false;
    }

    void AskToQuit() {
        if (fDelegate != nullptr)
            fDelegate->QuitRequested();
    }

    void Launch() {
        if (fDelegate == nullptr || std::exchange(fLaunched, true))
            return;
        const Opening opening = OpeningAtLaunch();
        DeliverOpening(*fDelegate, opening);
        if (fDelegate != nullptr && opening.files.empty() && opening.addresses.empty())
            fDelegate->OpenUntitledFile();
        if (fDelegate != nullptr)
            fDelegate->DidFinishLaunching();
    }

    void SetDelegate(NativeApplicationDelegate* delegate) {
        fDelegate = delegate;
        fLaunched = false;
    }

private:
    bool Open(const QFileOpenEvent& event) {
        Opening opening;
        if (event.file().isEmpty())
            opening.addresses.push_back(ToUtf8(event.url().toString()));
        else
            opening.files.push_back(ToUtf8(event.file()));
        DeliverOpening(*fDelegate, opening);
        return true;
    }

    NativeApplicationDelegate* fDelegate = nullptr;
    bool fLaunched = false;
};

struct NativeApplication::Data {
    std::unique_ptr<EventApplication> toolkit = StartToolkit();
    ApplicationEvents events;
    std::unique_ptr<QuitSignals> quitSignals;
    std::string name;
    bool terminating = false;
    bool ended = false;
};

NativeApplication::NativeApplication()
    : fData(std::make_unique<Data>()) {
    fData->toolkit->installEventFilter(&fData->events);
}

NativeApplication::~NativeApplication() = default;

NativeApplication& NativeApplication::Shared() {
    // Never deleted: views and windows that live as long as the process need it to its end.
    static NativeApplication& application = *new NativeApplication;
    return application;
}

void NativeApplication::SetName(const std::string& name, const std::string& identifier) {
    fData->name = name;
    // The toolkit puts a display name behind every window's title, so it gets none.
    QCoreApplication::setApplicationName(ToQString(identifier));
    QGuiApplication::setDesktopFileName(ToQString(identifier));
}

void NativeApplication::SetIconFile(const std::string& path) {
    // Drawn while the desktop is putting up the first window, which need not wait for it.
    QTimer::singleShot(
        0, qApp, [picture = ToQString(path)] { QGuiApplication::setWindowIcon(QIcon(picture)); });
}

const std::string& NativeApplication::Name() const {
    return fData->name;
}

void NativeApplication::SetDelegate(NativeApplicationDelegate* delegate) {
    fData->events.SetDelegate(delegate);
    fData->quitSignals.reset();
    if (delegate == nullptr)
        return;
    fData->quitSignals = std::make_unique<QuitSignals>([this] { fData->events.AskToQuit(); });
    fData->ended = false;
    if (std::exchange(fData->terminating, false))
        ForgetExit();
}

void NativeApplication::Run() {
    if (fData->terminating) {
        ForgetExit();
    } else {
        QTimer::singleShot(0, &fData->events, [this] { fData->events.Launch(); });
        QApplication::exec();
    }
    fData->ended = fData->terminating;
    RethrowEventFailure();
}

void NativeApplication::RunForTime(double seconds) {
    if (fData->terminating)
        return;
    QEventLoop loop;
    if (seconds > 0) {
        const std::chrono::duration<double> time(seconds);
        QTimer::singleShot(std::chrono::ceil<std::chrono::milliseconds>(time), Qt::PreciseTimer,
                           &loop, &QEventLoop::quit);
        loop.exec();
    } else {
        loop.processEvents();
    }
    RethrowEventFailure();
}

void NativeApplication::Terminate() {
    fData->terminating = true;
    fData->ended = false;
    QCoreApplication::exit();
}

bool NativeApplication::IsTerminating() const {
    return fData->terminating;
}

bool NativeApplication::HasEnded() const {
    return fData->ended;
}

NativeMenu& NativeApplication::MainMenu() {
    static NativeMenu menu;
    return menu;
}

void RethrowEventFailure() {
    auto& toolkit = static_cast<EventApplication&>(*qApp);
    if (const std::exception_ptr failure = toolkit.TakeFailure())
        std::rethrow_exception(failure);
}

} // namespace Kestrin
