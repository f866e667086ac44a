#pragma once
// Translates a window control by control: its caption (with `caption`), labels, buttons, group
// boxes, radio and check boxes, menus and their actions, tool tips, list and tree headers (also
// the column captions of the program's own lists), toolbar buttons and their menus, and tab
// captions. With `reverse` the texts go back to German, so that an open window can take another
// language: each control keeps the German text it was translated from, and gets exactly that
// back. Does nothing while German is set.
//
// On windows other than frmMain, a QTreeWidget or QTableWidget whose column is headed "Name"
// (or carries "Name" as its header item's Qt::UserRole) also has that column translated in every
// row. Child windows are left to their own call; status bars and any control whose property
// "vdNoTranslate" is true are left alone, as they show the user's data.

class QWidget;

namespace vd::app::ui {

void TranslateForm(QWidget* form, bool caption, bool reverse = false);

// The property that keeps a control (and its children) out of TranslateForm.
inline constexpr const char* kNoTranslate = "vdNoTranslate";

} // namespace vd::app::ui
