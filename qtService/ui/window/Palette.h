#pragma once

class QPalette;
class QWidget;

namespace ui {

// Whether a palette shows light text on a dark ground; drawings and style sheets come in both kinds.
bool isDark(const QPalette& palette);

// Styles outline empty check boxes in a darker shade of the window, which on a dark ground is none. Gives the widget, a
// check box or a list of them, a lighter shade to start from.
void outlineChecks(QWidget* widget);

// Gives a label the colour of a remark: its parent's text, fainter. Again when the palette has changed.
void mute(QWidget* label);

// Themes that darken everything else often leave links in the blue that is meant for paper. Before the windows are
// made: a text takes its links' colour when it is set.
void ensureLegibleLinks();

} // namespace ui
