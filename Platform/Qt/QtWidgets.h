#pragma once

#include "Platform/Qt/QtView.h"
#include "Platform/UI/NativeView.h"
#include "Platform/UI/NativeWindow.h"

#include <QPointer>
#include <QWidget>
#include <functional>

namespace Kestrin {

/// A widget of ours. Retired, it stays until everything of ours that runs has returned: the toolkit
/// would delete it already when an event loop inside one of its events turns. And it keeps its
/// place while anything is drawn, since the toolkit goes through the tree of widgets then.
class QtEventTarget : public QWidget {
public:
    using QWidget::QWidget;

    /// As long as one of these lives no retired widget is deleted. Whoever calls what calls hooks,
    /// and goes on with widgets afterwards, has one.
    class Running {
    public:
        Running();
        ~Running();
        Running(const Running&) = delete;
        Running& operator=(const Running&) = delete;
    };

    /// Hides the widget, takes it out of its parent and has it deleted as soon as nothing runs.
    void RetireSafely();

protected:
    /// Something is being drawn as long as one of these lives.
    class Drawing {
    public:
        Drawing();
        ~Drawing();
        Drawing(const Drawing&) = delete;
        Drawing& operator=(const Drawing&) = delete;
    };

    bool event(QEvent* event) final;
    /// What QWidget::event is for.
    virtual bool HandleEvent(QEvent& event) { return QWidget::event(&event); }

    /// Brings parent and visibility to what they should be, now or as soon as nothing is drawn.
    void Rearrange();
    /// Does that. A retired widget has been taken out of its parent before.
    virtual void ArrangeNow() = 0;
    bool IsRetired() const { return fRetired; }

private:
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

    /// Null for none.
    void SetSuperview(QWidget* superview);
    void SetFrame(const CGRect& frame);
    void SetHidden(bool hidden);
    /// From the view's coordinates to the widget's, which starts at a whole point.
    QPointF Fraction() const { return fFraction; }

    // Events

    void SetEnabled(bool enabled);
    bool IsUsable() const { return fEnabled; }
    void SetTabStop(bool stop);
    void SetFirstResponder(bool first);
    /// Ends the press, whose release will not come.
    void LosePress();
    /// The view that has a press now; null for none.
    static QtView* Pressed();

    // Accessibility

    void SetAccessibility(AccessibleDescription description);
    const AccessibleDescription& Accessibility() const { return fAccessibility; }
    /// Has the client handle a press that is not the pointer's. It may be lost as that one may.
    void Press(const std::function<void(NativeViewClient&)>& handle);

protected:
    bool HandleEvent(QEvent& event) override;
    void ArrangeNow() override;
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
    void UpdateFocusPolicy();
    NativeMouseEvent MouseEventAt(QPointF position, Qt::KeyboardModifiers modifiers) const;

    NativeViewClient* fClient;
    QPointer<QWidget> fSuperview;
    CGRect fFrame{};
    QPointF fFraction;
    AccessibleDescription fAccessibility;
    bool fHidden = false;
    bool fEnabled = true;
    bool fTabStop = false;
    bool fPressed = false;
    bool fIsFirstResponder = false;
};

/// The top-level widget of a native window, which the content view covers.
class QtWindow final : public QtEventTarget {
public:
    QtWindow(NativeWindowClient& client, unsigned style, QSize contentSize);

    void ForgetClient() { fClient = nullptr; }

    /// Tells the views which of them has the focus now, where that changed. Having the focus does
    /// not depend on the window being active.
    void NoteFirstResponder();
    void SetShown(bool shown);
    void FocusNextTabStop() { focusNextPrevChild(true); }

protected:
    bool HandleEvent(QEvent& event) override;
    void ArrangeNow() override;
    void closeEvent(QCloseEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    NativeWindowClient* fClient;
    QPointer<QtView> fFirstResponder;
    QSize fToldSize;
    bool fShown = false;
};

/// Makes views and text fields known to assistive technologies. Once per process.
void InstallAccessibility();

/// Tells assistive technologies that the value of a view or text field is another one.
void TellAccessibleValueOf(QWidget& widget);

/// The QtWindow that a widget stands in; null for none.
QtWindow* WindowOf(const QWidget& widget);

} // namespace Kestrin
