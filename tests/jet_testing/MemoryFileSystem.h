#pragma once

#include "jet/storage/FileSystem.h"

#include <cstdint>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace jet_testing {

using Bytes = std::vector<std::byte>;

/// Files in memory that remember what has been flushed and what has not.
///
/// PowerLoss() does what pulling the plug may do: of everything written since a
/// file's last Sync any part, in sectors of 512 bytes and in any order, is lost;
/// files made or removed since the folder's last SyncFolder may be back or gone.
class MemoryFileSystem : public jet::FileSystem {
public:
    std::unique_ptr<jet::File> Open(const std::filesystem::path& path, Mode mode,
                                    jet::Sharing sharing) override;
    bool Exists(const std::filesystem::path& path) override;
    bool IsInUse(const std::filesystem::path& path) override;
    void Remove(const std::filesystem::path& path) override;
    void Replace(const std::filesystem::path& from, const std::filesystem::path& to) override;
    void SyncFolder(const std::filesystem::path& folder) override;
    std::filesystem::path Resolve(const std::filesystem::path& path) override { return path; }

    /// Whole files, durable at once.
    void Put(const std::filesystem::path& path, const Bytes& content);
    Bytes Get(const std::filesystem::path& path) const;
    std::vector<std::string> Names() const;

    void PowerLoss(std::mt19937& random);

    struct PendingWrite {
        std::uint64_t offset = 0;
        Bytes bytes;
        bool resize = false; ///< to `offset`
    };
    struct Node {
        Bytes content;
        Bytes durable;
        std::vector<PendingWrite> pending;
        int readers = 0; ///< opened Shared
        bool exclusive = false;
    };

private:
    std::map<std::string, std::shared_ptr<Node>> m_files;
    std::map<std::string, std::shared_ptr<Node>> m_durableFiles;
};

} // namespace jet_testing
