// A window made from a dialog template of the program's resources. Main thread only.
#pragma once

#include <string>

#include "ui/toolkit/window.h"

namespace omniset {

class ModalScope;

class Dialog : public Window {
 public:
  ~Dialog() override;

  // A modeless dialog. Raises Error "CreateDialog", or what the object's procedure raised while the
  // dialog came into being; then there is no native window.
  void create(int templateId, HWND parent = nullptr);

  // Runs the dialog until it is ended by EndDialog, whose result it returns. Raises as create()
  // does, and also what a procedure raised while the dialog was open.
  INT_PTR runModal(int templateId, HWND parent);

  // Every message from WM_INITDIALOG on; handle() is valid by then. A result other than FALSE says
  // that the message is dealt with. The default answers TRUE to WM_INITDIALOG and FALSE to the
  // rest.
  virtual INT_PTR dialogProcedure(UINT message, WPARAM word, LPARAM value);

  // The controls, by id. Each of these raises Error "GetDlgItem (<id>)" when there is no such
  // control.
  HWND control(int id) const;

  std::string text(int id) const;
  // Touches the control only when its text differs, so that a repetition does not flicker, move the
  // caret or send notifications. The same holds for enable, setReadOnly, setChecked and
  // setProgress.
  void setText(int id, const std::string& text);
  bool isChecked(int id) const;
  void setChecked(int id, bool checked);
  bool isEnabled(int id) const;
  void enable(int id, bool enabled);
  bool isReadOnly(int id) const;
  void setReadOnly(int id, bool readOnly);  // of an edit

  // Combo boxes. Lines count from 0; -1 means none.
  int addLine(int id, const std::string& text);  // returns its index, as sorted by the box
  int lineCount(int id) const;
  std::string lineText(int id, int line) const;         // empty when there is no such line
  int findLine(int id, const std::string& text) const;  // the same text to the letter, case too
  void selectLine(int id, int line);
  int selectedLine(int id) const;
  void deleteLine(int id, int line);

  // Progress bars.
  void setProgressRange(int id, int low, int high);
  void setProgress(int id, int position);
  int progress(int id) const;

 protected:
  // Ends a modal dialog with this result.
  void endModal(INT_PTR result) const;

 private:
  static INT_PTR CALLBACK procedure(HWND handle, UINT message, WPARAM word, LPARAM value);
  void bind(HWND handle);
  LRESULT send(int id, UINT message, WPARAM word = 0, LPARAM value = 0) const;

  ModalScope* modal_ = nullptr;  // while it runs modally
};

}  // namespace omniset
