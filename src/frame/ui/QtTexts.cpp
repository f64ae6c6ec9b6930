#include "frame/ui/QtTexts.h"

#include <QCoreApplication>
#include <QHash>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

namespace {

const QHash<QString, QString>& Dutch()
{
    static const QHash<QString, QString> texts{
        // text boxes
        {"&Undo", "&Ongedaan maken"},
        {"&Redo", "Op&nieuw"},
        {"Cu&t", "K&nippen"},
        {"&Copy", "&Kopiëren"},
        {"&Paste", "&Plakken"},
        {"Delete", "Verwijderen"},
        {"Select All", "Alles selecteren"},
        {"Copy &Link Location", "Koppeling &kopiëren"},
        {"&Select All", "&Alles selecteren"},
        {"&Step up", "&Hoger"},
        {"Step &down", "&Lager"},
        // scroll bars
        {"Scroll here", "Hierheen schuiven"},
        {"Left edge", "Linkerrand"},
        {"Right edge", "Rechterrand"},
        {"Top", "Bovenkant"},
        {"Bottom", "Onderkant"},
        {"Page left", "Pagina naar links"},
        {"Page right", "Pagina naar rechts"},
        {"Page up", "Pagina omhoog"},
        {"Page down", "Pagina omlaag"},
        {"Scroll left", "Naar links schuiven"},
        {"Scroll right", "Naar rechts schuiven"},
        {"Scroll up", "Omhoog schuiven"},
        {"Scroll down", "Omlaag schuiven"},
        // buttons
        {"OK", "OK"},
        {"&OK", "&OK"},
        {"Cancel", "Annuleren"},
        {"&Cancel", "&Annuleren"},
        {"Close", "Sluiten"},
        {"&Close", "S&luiten"},
        {"&Yes", "&Ja"},
        {"&No", "&Nee"},
        {"Apply", "Toepassen"},
        {"Help", "Help"},
        {"Open", "Openen"},
        {"&Open", "&Openen"},
        {"Save", "Opslaan"},
        {"&Save", "O&pslaan"},
        {"Save As", "Opslaan als"},
        {"&Choose", "&Kiezen"},
        {"&Print", "&Afdrukken"},
        {"Print", "Afdrukken"},
        // dialogs for colours and fonts
        {"Select Color", "Kleur kiezen"},
        {"&Basic colors", "&Basiskleuren"},
        {"&Custom colors", "&Eigen kleuren"},
        {"&Add to Custom Colors", "Aan eigen kleuren &toevoegen"},
        {"&Pick Screen Color", "Kleur van het &scherm kiezen"},
        {"Cursor at %1, %2\nPress ESC to cancel", "Aanwijzer op %1, %2\nEsc is annuleren"},
        {"Hu&e:", "&Tint:"},
        {"&Sat:", "&Verz:"},
        {"&Val:", "&Hld:"},
        {"&Red:", "&Rood:"},
        {"&Green:", "&Groen:"},
        {"Bl&ue:", "Bl&auw:"},
        {"A&lpha channel:", "&Dekking:"},
        {"Select Font", "Lettertype kiezen"},
        {"&Font", "&Lettertype"},
        {"Font st&yle", "&Stijl"},
        {"&Size", "&Grootte"},
        {"Effects", "Effecten"},
        {"Stri&keout", "&Doorgehaald"},
        {"&Underline", "&Onderstreept"},
        {"Sample", "Voorbeeld"},
        {"Wr&iting System", "S&chrift"},
        {"Any", "Alle"},
        {"Latin", "Latijn"},
        {"Greek", "Grieks"},
        {"Cyrillic", "Cyrillisch"},
        {"Symbol", "Symbolen"},
        // dialogs for files
        {"Look in:", "Zoeken in:"},
        {"Directory:", "Map:"},
        {"Folder", "Map"},
        {"File", "Bestand"},
        {"Drive", "Station"},
        {"File &name:", "Bestands&naam:"},
        {"Files of type:", "Bestandstype:"},
        {"Save as type:", "Opslaan als type:"},
        {"Back", "Terug"},
        {"Forward", "Vooruit"},
        {"Parent Directory", "Bovenliggende map"},
        {"Go back", "Terug"},
        {"Go forward", "Vooruit"},
        {"Go to the parent directory", "Naar de bovenliggende map"},
        {"Create New Folder", "Nieuwe map maken"},
        {"Create a New Folder", "Een nieuwe map maken"},
        {"&New Folder", "&Nieuwe map"},
        {"New Folder", "Nieuwe map"},
        {"List View", "Lijst"},
        {"Detail View", "Details"},
        {"Change to list view mode", "Als lijst tonen"},
        {"Change to detail view mode", "Met details tonen"},
        {"Sidebar", "Zijbalk"},
        {"All Files (*)", "Alle bestanden (*)"},
        {"Name", "Naam"},
        {"Size", "Grootte"},
        {"Type", "Type"},
        {"Kind", "Soort"},
        {"Date Modified", "Gewijzigd op"},
        {"My Computer", "Deze computer"},
        {"Computer", "Computer"},
        {"Recent Places", "Recente plaatsen"},
        {"&Rename", "&Naam wijzigen"},
        {"&Delete", "&Verwijderen"},
        {"Show &hidden files", "&Verborgen bestanden tonen"},
        {"Remove", "Verwijderen"},
        {"%1 already exists.\nDo you want to replace it?",
         "%1 bestaat al.\nWilt u het bestand vervangen?"},
        {"'%1' is write protected.\nDo you want to delete it anyway?",
         "'%1' is alleen-lezen.\nToch verwijderen?"},
        {"Are you sure you want to delete '%1'?", "Weet u zeker dat u '%1' wilt verwijderen?"},
        {"Could not delete directory.", "De map kan niet worden verwijderd."},
        {"%1\nFile not found.\nPlease verify the correct file name was given.",
         "%1\nHet bestand is niet gevonden.\nControleer de bestandsnaam."},
        {"%1\nDirectory not found.\nPlease verify the correct directory name was given.",
         "%1\nDe map is niet gevonden.\nControleer de naam van de map."},
    };
    return texts;
}

class DutchTexts : public QTranslator {
public:
    using QTranslator::QTranslator;

    QString translate(const char*, const char* source, const char*, int) const override
    {
        return Dutch().value(QString::fromUtf8(source));
    }
    bool isEmpty() const override { return false; }
};

} // namespace

void InstallQtTexts()
{
    auto* full = new QTranslator(qApp);
    if (full->load("qtbase_nl", QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(full);
    // The last one is asked first: our words are the same on every machine, the
    // toolkit's translation, where it is installed, fills in the rest.
    QCoreApplication::installTranslator(new DutchTexts(qApp));
}
