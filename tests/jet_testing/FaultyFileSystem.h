#pragma once

#include "jet/storage/FileSystem.h"

#include <cstdint>
#include <functional>
#include <map>

namespace jet_testing {

/// A file system that goes wrong at a chosen operation.
///
///     FaultyFileSystem files(jet::FileSystem::System());
///     files.Arm({.operations = kWrite, .at = 17, .effect = Effect::DieTorn});
///
/// Count() of a run without faults tells how many there are to choose from.
class FaultyFileSystem : public jet::FileSystem {
public:
    enum Operation : unsigned {
        kRead = 1,
        kWrite = 2, ///< of bytes; also a change of size
        kSync = 4,  ///< of a file or a folder
        kName = 8,  ///< creating, removing, replacing
        kAll = 15,
        kChange = kWrite | kSync | kName,
    };
    enum class Effect {
        Fail,        ///< this once, with an Io error
        FailForGood, ///< this and all that follow of the chosen operations
        DiskFull,    ///< from here on no file grows and none is made
        Die,         ///< from here on nothing happens any more, as in a killed process
        DieTorn,     ///< as Die, but half of this write arrives
    };
    struct Fault {
        unsigned operations = kAll;
        long at = 1; ///< the n-th of them
        Effect effect = Effect::Fail;
    };

    explicit FaultyFileSystem(jet::FileSystem& inner) : m_inner(inner) {}

    void Arm(const Fault& fault);
    void Disarm();
    bool HasStruck() const { return m_struck; }
    /// Operations of these kinds since the last Arm or Disarm.
    long Count(unsigned operations) const;
    /// Called instead of dying within the program: for a child process, _exit.
    void OnDeath(std::function<void()> action) { m_onDeath = std::move(action); }

    std::unique_ptr<jet::File> Open(const std::filesystem::path& path, Mode mode,
                                    jet::Sharing sharing) override;
    bool Exists(const std::filesystem::path& path) override { return m_inner.Exists(path); }
    bool IsInUse(const std::filesystem::path& path) override { return m_inner.IsInUse(path); }
    void Remove(const std::filesystem::path& path) override;
    void Replace(const std::filesystem::path& from, const std::filesystem::path& to) override;
    void SyncFolder(const std::filesystem::path& folder) override;
    std::filesystem::path Resolve(const std::filesystem::path& path) override
    {
        return m_inner.Resolve(path);
    }

private:
    friend class FaultyFile;
    /// Throws when it is time; `grows`: the operation needs room on the disk.
    /// `tear` is called before dying torn.
    void Pass(Operation operation, bool grows, const std::function<void()>& tear = {});
    void Die();

    jet::FileSystem& m_inner;
    Fault m_fault;
    bool m_armed = false;
    bool m_struck = false;
    bool m_dead = false;
    std::map<unsigned, long> m_counts;
    std::function<void()> m_onDeath;
};

} // namespace jet_testing
