#pragma once

#include "Platform/Qt/QtView.h"
#include "Platform/UI/NativeView.h"
#include "Platform/UI/NativeWindow.h"

#include <QPointer>
#include <QWidget>

namespace Kestrin {

/// A widget of ours that stays until its own events have returned, whoever retires it meanwhile:
/// the toolkit would delete it already when an event loop inside such an event turns.
class QtEventTarget : public QWidget {
public:
    using QWidget::QWidget;

    /// Hides the widget, takes it out of its parent and has it deleted as soon as nothing in it
    /// runs.
    void RetireSafely();

protected:
    bool event(QEvent* event) final;
    /// What QWidget::event is for.
    virtual bool HandleEvent(QEvent& event) { return QWidget::event(&event); }

private:
    int fEventsRunning = 0;
    bool fRetired = false;
};

/// The widget of a native view.
class QtView final : public QtEventTarget {
public:
    explicit QtView(NativeViewClient& client);

    /// Null once the native view is gone.
    NativeViewClient* Client() const { return fClient; }
    void ForgetClient() { fClient = nullptr; }

    // Place

    void SetSuperview(QWidget* superview);
    void SetFrame(const CGRect& frame);
    void SetHidden(bool hidden);
    /// From the view's coordinates to the widget's, which starts at a whole point.
    QPointF Fraction() const { return fFraction; }

    // Events

    void SetTracksMouse(bool tracks) { fTracksMouse = tracks; }
    void SetFirstResponder(bool first);
    /// Ends the press, whose release will not come.
    void LosePress();
    /// The view that has a press now; null for none.
    static QtView* Pressed();

    // Accessibility

    void SetAccessibility(AccessibleRole role, const QString& name);
    void SetAccessibleValue(const QString& value);
    AccessibleRole GetAccessibleRole() const { return fRole; }
    const QString& AccessibleValue() const { return fValue; }

protected:
    bool HandleEvent(QEvent& event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void Press(const QMouseEvent& event, int clickCount);
    bool HandleKey(QKeyEvent& event);
    void PlaceWidget();
    NativeMouseEvent MouseEventAt(QPointF position, Qt::KeyboardModifiers modifiers) const;

    NativeViewClient* fClient;
    CGRect fFrame{};
    QPointF fFraction;
    AccessibleRole fRole = AccessibleRole::kNone;
    QString fValue;
    bool fHidden = false;
    bool fTracksMouse = false;
    bool fPressed = false;
    bool fIsFirstResponder = false;
};

/// The top-level widget of a native window: the content view, below a menu bar where there is one.
class QtWindow final : public QtEventTarget {
public:
    QtWindow(NativeWindowClient& client, unsigned style, QSize contentSize);
    ~QtWindow() override;

    void ForgetClient() { fClient = nullptr; }
    QWidget& Content() { return *fContent; }

    /// Tells the views which of them has the focus now, where that changed. Having the focus does
    /// not depend on the window being active.
    void NoteFirstResponder();
    void FocusNextTabStop() { focusNextPrevChild(true); }

    /// Puts a bar above the content, which keeps its size; null for none. The bar becomes the
    /// window's.
    void SetMenuBar(QWidget* bar);

protected:
    bool HandleEvent(QEvent& event) override;
    void closeEvent(QCloseEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void Arrange();
    void FitToContent(QSize contentSize);
    int BarHeight() const;

    NativeWindowClient* fClient;
    QWidget* fContent;
    QPointer<QWidget> fBar;
    QPointer<QtView> fFirstResponder;
    QSize fToldSize;
    bool fResizable;
};

/// Makes views known to assistive technologies. Once per process.
void InstallViewAccessibility();

/// The QtWindow that a widget stands in; null for none.
QtWindow* WindowOf(const QWidget& widget);

} // namespace Kestrin
