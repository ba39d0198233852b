#pragma once

namespace lexicove {

class FrmList;

// How one window hands the player on to the next. Windows never call each
// other's procedures; they ask the navigator to open, show or end, and the
// navigator creates each window afresh (the list window excepted, which is
// kept and only hidden).
class Navigator {
public:
    virtual ~Navigator() = default;
    // Shows the main menu again, as it was left, with the focus in its list.
    virtual void showMainMenu() = 0;
    // Each open* creates the window, runs its loading and shows it. They return
    // false when the window closed itself while loading (no lists, a file that
    // can't be read), having already brought the main menu back.
    virtual bool openChooser() = 0;
    virtual bool openEditor() = 0;
    virtual bool openOptions() = 0;
    virtual bool openPuzzle() = 0;
    // The shared list window (words to find, font sizes).
    virtual FrmList &listWindow() = 0;
    // Closes every window and ends the run.
    virtual void endProgram() = 0;
};

} // namespace lexicove
