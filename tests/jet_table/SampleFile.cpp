#include "SampleFile.h"

#include <fstream>
#include <iterator>

SampleFile::SampleFile(const std::string& name)
    : SampleFile(Folder() / (name + ".mdb"), jet::Access::ReadOnly)
{}

SampleFile::SampleFile(const std::filesystem::path& path, jet::Access access)
{
    jet::PagerOptions options;
    options.access = access;
    options.sharing =
        access == jet::Access::ReadOnly ? jet::Sharing::Shared : jet::Sharing::Exclusive;
    m_pager = jet::Pager::Open(jet::FileSystem::System(), path, options);
    m_pages = std::make_unique<jet::PageAllocator>(*m_pager);
    FindTables();
}

void SampleFile::FindTables()
{
    const std::unique_ptr<jet::Table> objects = Open(2, "MSysObjects");
    const auto column = [&](const char* name) { return objects->Definition().FindColumn(name); };
    for (jet::TableScan scan(*objects); scan.Next();) {
        if (scan.Get(column("Type")) == jet::Value(std::int16_t{1}))
            m_tables.emplace_back(scan.Get(column("Name")).AsText(),
                                  static_cast<jet::PageNumber>(scan.Get(column("Id")).AsInt()));
    }
}

std::unique_ptr<jet::Table> SampleFile::Open(jet::PageNumber page, const std::string& name)
{
    return std::make_unique<jet::Table>(*m_pager, *m_pages, name,
                                        jet::ReadTableDefinition(*m_pager, page));
}

std::filesystem::path SampleFile::Folder()
{
    return std::filesystem::path(TEST_DATA_FOLDER) / "jet" / "samples";
}

std::vector<std::string> SampleFile::WritableNames()
{
    return {"adox_jet4",    "common2V2000",      "compIndexV2000",       "delColV2000",
            "delV2000",     "fixedNumericV2000", "indexPropertiesV2000", "oracle-all-types",
            "overflowV2000"};
}

std::vector<std::string> SampleFile::Names()
{
    std::vector<std::string> names = WritableNames();
    for (const char* jet3 : {"compIndexV1997", "indexCodesV1997", "indexV1997"})
        names.emplace_back(jet3);
    return names;
}

jet::Bytes ReadWholeFile(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    const std::string content{std::istreambuf_iterator<char>(file), {}};
    const auto* begin = reinterpret_cast<const std::byte*>(content.data());
    return jet::Bytes(begin, begin + content.size());
}
