#include "database/modODBC.h"

#include <windows.h>

namespace {

constexpr WORD kRemoveDataSource = 3; // ODBC_REMOVE_DSN
constexpr char kStuurprogramma[] = "Microsoft Access Driver (*.mdb)";

} // namespace

void RemoveDataSource(const QString& naam)
{
    // Loaded at run time: not every machine has the installer's library.
    const HMODULE bibliotheek = LoadLibraryA("ODBCCP32.DLL");
    if (!bibliotheek)
        return;
    using Config = BOOL(WINAPI*)(HWND, WORD, LPCSTR, LPCSTR);
    // By way of void(*)(), from which any function may be had without a warning.
    const auto adres =
        reinterpret_cast<void (*)()>(GetProcAddress(bibliotheek, "SQLConfigDataSource"));
    if (const auto config = reinterpret_cast<Config>(adres)) {
        QByteArray kenmerken = "DSN=" + naam.toLocal8Bit();
        kenmerken.append('\0'); // with the array's own: the list ends in two
        config(nullptr, kRemoveDataSource, kStuurprogramma, kenmerken.constData());
    }
    FreeLibrary(bibliotheek);
}
