#include "core/game.h"
#include "core/gamestate.h"
#include "platform/qtfiledialogs.h"
#include "platform/qtplatform.h"

#include <QApplication>

#include <memory>

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Lexicove"));
    // Ties the windows to the desktop entry (its icon in docks and task bars).
    QGuiApplication::setDesktopFileName(QStringLiteral(LEXICOVE_APP_ID));
    // Windows hand the player on to each other, so there are moments with no
    // window shown; the game ends the run itself.
    QApplication::setQuitOnLastWindowClosed(false);

    lexicove::QtDialogs dialogs;
    lexicove::QtSound sound;
    lexicove::SystemClock clock;
    lexicove::SystemRandom random;
    lexicove::QtSystemInfo system;
    lexicove::QtFiles files;
    lexicove::QtFileDialogs fileDialogs;
    lexicove::QtSettings settings;
    // Nothing is asked of the braille service until a puzzle is played.
    const std::unique_ptr<lexicove::BrailleDisplay> braille = lexicove::MakeSystemBrailleDisplay();
    lexicove::Platform platform{dialogs, sound,       clock,    random,  system,
                                files,   fileDialogs, settings, *braille};
    // A new player finds their word list folder, with the starter lists in
    // it, from the first start on.
    system.wordListFolder();
    lexicove::GameState state;

    int result = 0;
    {
        lexicove::Game game(state, platform);
        if (game.start())
            result = QApplication::exec();
    }
    sound.shutdown();
    return result;
}
