#include "bench/Readers.h"

#include <cstdio>
#include <filesystem>
#include <utility>

#include "handlers/internal/ConfigFile.h"

#if defined(HAS_INIH)
#include <INIReader.h>
#endif
#if defined(HAS_SIMPLEINI)
#define SI_NO_CONVERSION  // plain bytes, as the others read them
#include <SimpleIni.h>
#endif
#if defined(HAS_GLIB)
#include <glib.h>
#endif

namespace bench {
namespace {

template <typename T>
std::unique_ptr<Reader> Make() {
  return std::make_unique<T>();
}

class OwnReader final : public Reader {
 public:
  bool Load(const std::string& text) override {
    return file_.Parse(text, /*merge=*/false) == ConfigFile::kSuccess;
  }
  bool LoadFile(const std::string& path) override {
    // As the platform reads a file whole: open, ask for the size, read, close.
    std::FILE* const file = std::fopen(path.c_str(), "rb");
    if (file == nullptr) return false;
    std::setvbuf(file, nullptr, _IONBF, 0);
    std::string text(std::filesystem::file_size(path), '\0');
    const std::size_t size = std::fread(text.data(), 1, text.size(), file);
    std::fclose(file);
    return size == text.size() &&
           file_.Parse(std::move(text), /*merge=*/false) == ConfigFile::kSuccess;
  }
  bool Find(const std::string& section, const std::string& key, std::string* value) override {
    return file_.ReadValue(section, key, value) == ConfigFile::kSuccess;
  }

 private:
  ConfigFile file_{/*caseSensitive=*/false};
};

#if defined(HAS_INIH)
/// Its reader that fills a map.
class Inih final : public Reader {
 public:
  bool Load(const std::string& text) override {
    reader_ = INIReader(text.data(), text.size());
    return reader_.ParseError() == 0;
  }
  bool LoadFile(const std::string& path) override {
    reader_ = INIReader(path);
    return reader_.ParseError() == 0;
  }
  bool Find(const std::string& section, const std::string& key, std::string* value) override {
    *value = reader_.Get(section, key, "");
    return !value->empty();
  }

 private:
  INIReader reader_{"", 0};
};
#endif

#if defined(HAS_SIMPLEINI)
class Simple final : public Reader {
 public:
  bool Load(const std::string& text) override { return file_.LoadData(text) == SI_OK; }
  bool LoadFile(const std::string& path) override { return file_.LoadFile(path.c_str()) == SI_OK; }
  bool Find(const std::string& section, const std::string& key, std::string* value) override {
    const char* const found = file_.GetValue(section.c_str(), key.c_str());
    if (found != nullptr) *value = found;
    return found != nullptr;
  }

 private:
  CSimpleIniA file_{/*isUtf8=*/true, /*isMultiKey=*/true};
};
#endif

#if defined(HAS_GLIB)
class KeyFile final : public Reader {
 public:
  ~KeyFile() override { g_key_file_free(file_); }
  bool Load(const std::string& text) override {
    return g_key_file_load_from_data(file_, text.data(), text.size(), G_KEY_FILE_KEEP_COMMENTS,
                                     nullptr) != 0;
  }
  bool LoadFile(const std::string& path) override {
    return g_key_file_load_from_file(file_, path.c_str(), G_KEY_FILE_KEEP_COMMENTS, nullptr) != 0;
  }
  bool Find(const std::string& section, const std::string& key, std::string* value) override {
    gchar* const found = g_key_file_get_string(file_, section.c_str(), key.c_str(), nullptr);
    if (found == nullptr) return false;
    *value = found;
    g_free(found);
    return true;
  }

 private:
  GKeyFile* file_ = g_key_file_new();
};
#endif

}  // namespace

const std::vector<NamedReader>& Readers() {
  static const std::vector<NamedReader> readers = {
    {"orvanta", Make<OwnReader>},
#if defined(HAS_INIH)
    {"inih", Make<Inih>},
#endif
#if defined(HAS_SIMPLEINI)
    {"SimpleIni", Make<Simple>},
#endif
#if defined(HAS_GLIB)
    {"GKeyFile", Make<KeyFile>},
#endif
  };
  return readers;
}

}  // namespace bench
