#pragma once

#include "UI/OSTextEdit.h"
#include "UI/View.h"

#include <memory>

/// A text field for a whole number within a closed range, 25 points high. Only digits can be typed,
/// pasted or dropped; the arrow keys step the number. When the field loses the keyboard focus the
/// entry is judged: a number out of range is reported in a message box and replaced by the last
/// accepted one. The field then shows the accepted number as it is written, also for "007" or none.
class NumericEditBox : public Kestrin::View, public Kestrin::OSTextEditViewClient {
public:
    NumericEditBox() = default;

    /// Places the box in `parent` at `where` and shows it; its first text is "0". `name` is what
    /// assistive technology calls it. To be called once before anything else.
    void Init(Kestrin::View* parent, const Kestrin::Point& where, float width, int minimum,
              int maximum, const UString& name);

    /// The number that the field shows at this moment, in range or not; 0 when it shows none.
    int Get() const;

    /// Accepts `value` and shows it. Does nothing while the field is being edited, when the value
    /// is out of range, or when the field shows it already.
    void Show(int value);

    // What happens to it
    bool SupportsFeature(ViewFeature feature) override;
    void DoDraw(Kestrin::DrawingContext& context) override;
    bool FilterTextEditDoTextInput(Kestrin::OSTextEdit* edit, const UString& text,
                                   unsigned int modifiers, unsigned char key) override;
    void ActiveStateChanged(Kestrin::OSTextEdit* edit, bool active) override;
    bool AcceptsText(Kestrin::OSTextEdit* edit, const UString& text) override;

private:
    void SetUpField();
    void Step(int difference);
    void Judge();
    bool IsInRange(int value) const { return fMinimum <= value && value <= fMaximum; }
    UString RangeMessage() const;

    std::unique_ptr<Kestrin::OSTextEdit> fField;
    int fValue = 1; // although the field's first text is "0": leaving it once makes it 0
    int fMinimum = 0;
    int fMaximum = 0;
    bool fEditing = false;
};
