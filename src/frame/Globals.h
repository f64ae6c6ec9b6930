#pragma once

#include <QString>

#include <memory>
#include <stdexcept>

class Boxes;
class Convert;
class FileSystemObject;
class HRdb;
class MapSelection;
class PaneSizes;
class QLMFile;
class QLMIniFile;
class SingleObject;
class Strijklengte;
class frmMain;
class frmMapResultaat;

/// The place of one global object, used like a function: gHRdb().OpenDB(...).
///
/// Objects of this floor come into being at their first use. Those of higher
/// floors are made by a factory that the roof sets (before that, and after
/// Release, a call throws std::logic_error). A class that can take what it
/// needs as a constructor argument takes it that way instead.
template <typename T>
class Global {
public:
    using Factory = std::shared_ptr<T> (*)();

    constexpr explicit Global(Factory factory = nullptr) : m_factory(factory) {}
    Global(const Global&) = delete;
    Global& operator=(const Global&) = delete;

    T& operator()()
    {
        if (!m_object && m_factory)
            m_object = m_factory();
        if (!m_object)
            throw std::logic_error("a global object is used before it is made");
        return *m_object;
    }
    /// Whether the object is there; does not make it.
    [[nodiscard]] bool Exists() const { return m_object != nullptr; }
    /// The object or null; does not make it.
    [[nodiscard]] T* Get() const { return m_object.get(); }

    void SetFactory(Factory factory) { m_factory = factory; }
    /// Takes the object over. (shared_ptr, because it can destroy a type that
    /// is only declared here; nothing else shares it.)
    void Set(std::shared_ptr<T> object) { m_object = std::move(object); }
    /// Uses an object that somebody else owns: a window, a test's fake.
    void Refer(T& object) { m_object = std::shared_ptr<T>(std::shared_ptr<T>(), &object); }
    void Release() { m_object.reset(); }

private:
    Factory m_factory;
    std::shared_ptr<T> m_object;
};

extern Global<QLMIniFile> gIniFile;   ///< the program's own ini
extern Global<FileSystemObject> gFso; ///< file-system operations
extern Global<Convert> gConvert;
extern Global<QLMFile> gFile;
extern Global<HRdb> gHRdb;
extern Global<frmMain> gMainForm;
extern Global<frmMapResultaat> gMapResultaatForm;
extern Global<PaneSizes> gPaneSizes;
extern Global<SingleObject> gSingleObject;
extern Global<MapSelection> gMapSelection;
extern Global<Strijklengte> gStrijklengte;

/// The way to ask and tell something from code without a window. Where it does
/// not exist (a test, a tool), questions count as answered with no.
extern Global<Boxes> gBoxes;

/// Suffix of caption sections; empty, as nothing sets it to anything else.
[[nodiscard]] const QString& gLanguage();
void SetLanguage(const QString& language);

/// Absolute folder of the forms' ini files, of the calculation settings.
[[nodiscard]] const QString& gIniPath();
void SetIniPath(const QString& folder);
[[nodiscard]] const QString& gRekeninstellingenPath();
void SetRekeninstellingenPath(const QString& folder);

/// Extra options are on (`ExtraOpties` is "RW").
[[nodiscard]] bool gExtraOpties();
void SetExtraOpties(bool on);
