#include "pictures/files.h"

#include <cstdio>
// jpeglib.h needs FILE and size_t from here.
#include <jerror.h>
#include <jpeglib.h>
#include <png.h>

#include <cerrno>
#include <csetjmp>
#include <filesystem>
#include <random>

namespace app {

namespace fs = std::filesystem;

namespace {

constexpr int kMaxSide = 32767;
constexpr std::int64_t kMaxPixels = 128 << 20;
constexpr std::size_t kMaxFileBytes = std::size_t(1) << 30;

[[noreturn]] void fail(const std::string& path, const std::string& what) { throw Error(path + ": " + what); }
[[noreturn]] void failWithErrno(const std::string& path) { fail(path, std::strerror(errno)); }

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

ZeliSize checkedSize(const std::string& path, std::uint64_t width, std::uint64_t height)
{
    if (width < 1 || height < 1) fail(path, "the picture has no pixels");
    if (width > kMaxSide || height > kMaxSide || std::int64_t(width * height) > kMaxPixels)
        fail(path, "a picture of " + std::to_string(width) + " x " + std::to_string(height) + " is too large");
    return {int(width), int(height)};
}

Picture readPng(const std::string& path, const std::string& bytes)
{
    struct Reader : png_image {
        Reader() : png_image{} { png_image::version = PNG_IMAGE_VERSION; }
        ~Reader() { png_image_free(this); }
    } reader;
    if (!png_image_begin_read_from_memory(&reader, bytes.data(), bytes.size()))
        fail(path, std::string("bad PNG file: ") + reader.message);
    reader.flags |= PNG_IMAGE_FLAG_16BIT_sRGB;
    reader.format = reader.format & PNG_FORMAT_FLAG_COLOR ? PNG_FORMAT_RGB : PNG_FORMAT_GRAY;
    Picture picture(checkedSize(path, reader.width, reader.height), PNG_IMAGE_SAMPLE_CHANNELS(reader.format));
    const png_color white = {255, 255, 255};
    if (!png_image_finish_read(&reader, &white, picture.data(), picture.step(), nullptr))
        fail(path, std::string("bad PNG file: ") + reader.message);
    return picture;
}

// libjpeg reports errors by jumping out of a call. The two functions that call setjmp hold nothing that would need a
// destructor.
class JpegReader {
public:
    JpegReader()
    {
        info_.err = jpeg_std_error(&errors_);
        info_.client_data = this;
        errors_.error_exit = [](j_common_ptr info) {
            info->err->format_message(info, self(info).message_);
            std::longjmp(self(info).escape_, 1);
        };
        // The library goes on with gray pixels where the data end early. Other warnings are of no interest.
        errors_.emit_message = [](j_common_ptr info, int level) {
            const int code = info->err->msg_code;
            if (level < 0 && (code == JWRN_JPEG_EOF || code == JWRN_HIT_MARKER)) info->err->error_exit(info);
        };
    }
    ~JpegReader()
    {
        if (created_) jpeg_destroy_decompress(&info_);
    }
    JpegReader(const JpegReader&) = delete;

    bool begin(const std::string& bytes)
    {
        if (setjmp(escape_)) return false;
        jpeg_create_decompress(&info_);
        created_ = true;
        jpeg_mem_src(&info_, reinterpret_cast<const unsigned char*>(bytes.data()), static_cast<unsigned long>(bytes.size()));
        jpeg_read_header(&info_, TRUE);
        info_.out_color_space = info_.num_components == 1 ? JCS_GRAYSCALE : JCS_RGB;
        jpeg_calc_output_dimensions(&info_);
        return true;
    }
    bool read(View<Zel8u> picture)
    {
        if (setjmp(escape_)) return false;
        jpeg_start_decompress(&info_);
        while (info_.output_scanline < info_.output_height) {
            JSAMPROW row = picture.row(int(info_.output_scanline));
            jpeg_read_scanlines(&info_, &row, 1);
        }
        jpeg_finish_decompress(&info_);
        return true;
    }
    const jpeg_decompress_struct& info() const { return info_; }
    const char* message() const { return message_; }

private:
    static JpegReader& self(j_common_ptr info) { return *static_cast<JpegReader*>(info->client_data); }

    jpeg_decompress_struct info_{};
    jpeg_error_mgr errors_{};
    std::jmp_buf escape_;
    char message_[JMSG_LENGTH_MAX] = "";
    bool created_ = false;
};

Picture readJpeg(const std::string& path, const std::string& bytes)
{
    JpegReader reader;
    if (!reader.begin(bytes)) fail(path, std::string("bad JPEG file: ") + reader.message());
    const auto& info = reader.info();
    if (info.num_components != 1 && info.num_components != 3)
        fail(path, "a JPEG file of " + std::to_string(info.num_components) + " channels; only gray and colour can be read");
    Picture picture(checkedSize(path, info.output_width, info.output_height), info.num_components);
    if (!reader.read(picture.whole())) fail(path, std::string("bad JPEG file: ") + reader.message());
    return picture;
}

// A file that takes its final name when it is complete, and vanishes when it never is.
class NewFile {
public:
    explicit NewFile(const fs::path& path)
        : path_(path), temporary_(path.string() + ".part" + std::to_string(std::random_device()())),
          file_(std::fopen(temporary_.c_str(), "wbx"))
    {
        if (!file_) failWithErrno(path_.string());
    }
    ~NewFile()
    {
        file_.reset();
        if (!finished_) std::remove(temporary_.c_str());
    }
    void write(std::string_view bytes)
    {
        if (std::fwrite(bytes.data(), 1, bytes.size(), file_.get()) != bytes.size()) failWithErrno(path_.string());
    }
    void finish()
    {
        if (std::fclose(file_.release()) != 0) failWithErrno(path_.string());
        std::error_code failure;
        fs::rename(temporary_, path_, failure);
        if (failure) fail(path_.string(), failure.message());
        finished_ = true;
    }

private:
    fs::path path_;
    std::string temporary_;
    File file_;
    bool finished_ = false;
};

} // namespace

std::string readFile(const std::string& path)
{
    const File file(std::fopen(path.c_str(), "rb"));
    if (!file) failWithErrno(path);
    std::string bytes;
    char chunk[1 << 16];
    while (const std::size_t count = std::fread(chunk, 1, sizeof chunk, file.get())) {
        bytes.append(chunk, count);
        if (bytes.size() > kMaxFileBytes) fail(path, "the file is larger than 1 GiB");
    }
    if (std::ferror(file.get())) failWithErrno(path);
    return bytes;
}

Picture readPicture(const std::string& path)
{
    const std::string bytes = readFile(path);
    if (bytes.empty()) fail(path, "the file is empty");
    if (bytes.starts_with("\x89PNG\r\n\x1a\n")) return readPng(path, bytes);
    if (bytes.starts_with("\xff\xd8\xff")) return readJpeg(path, bytes);
    fail(path, "neither a PNG nor a JPEG file");
}

void writeFile(const std::string& path, std::string_view bytes)
{
    std::error_code none;
    const fs::path target = fs::exists(path, none) ? fs::canonical(path) : fs::path(path);
    if (fs::is_directory(target, none)) fail(path, "this is a folder");
    if (fs::exists(target, none)) {
        const File existing(std::fopen(path.c_str(), "ab"));
        if (!existing) failWithErrno(path);
        if (!fs::is_regular_file(target)) { // a device or a pipe: nothing to take the place of
            if (std::fwrite(bytes.data(), 1, bytes.size(), existing.get()) != bytes.size() ||
                std::fflush(existing.get()) != 0)
                failWithErrno(path);
            return;
        }
    }
    NewFile file(target);
    file.write(bytes);
    file.finish();
}

void writePng(const std::string& path, const Picture& picture)
{
    png_image writer{};
    writer.version = PNG_IMAGE_VERSION;
    writer.width = png_uint_32(picture.size().width);
    writer.height = png_uint_32(picture.size().height);
    writer.format = picture.channels() == 3 ? PNG_FORMAT_RGB : PNG_FORMAT_GRAY;
    std::string bytes;
    png_alloc_size_t size = PNG_IMAGE_PNG_SIZE_MAX(writer);
    bytes.resize(size);
    if (!png_image_write_to_memory(&writer, bytes.data(), &size, 0, picture.view().data, picture.step(), nullptr))
        fail(path, std::string("cannot be made: ") + writer.message);
    writeFile(path, std::string_view(bytes).substr(0, size));
}

} // namespace app
