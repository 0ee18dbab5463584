#include "tools/common/PendingOutputFile.h"

#include <unistd.h>

#include <string>
#include <system_error>

#include "tools/common/ToolError.h"

namespace Tw::Tools {
namespace {

std::filesystem::path directoryOf(const std::filesystem::path& path) {
    return path.has_parent_path() ? path.parent_path() : std::filesystem::path(".");
}

// Hidden, and named with the process id so that two runs writing the same output never share one.
std::filesystem::path temporaryPathFor(const std::filesystem::path& path) {
    std::string name = ".";
    name += path.filename().string();
    name += '.';
    name += std::to_string(::getpid());
    name += ".partial";
    return directoryOf(path) / name;
}

}  // namespace

PendingOutputFile::PendingOutputFile(std::filesystem::path path)
    : path_(std::move(path)), temporaryPath_(temporaryPathFor(path_)) {}

PendingOutputFile::~PendingOutputFile() {
    if (committed_) return;
    std::error_code ignored;
    std::filesystem::remove(temporaryPath_, ignored);
}

void PendingOutputFile::commit() {
    std::error_code error;
    std::filesystem::rename(temporaryPath_, path_, error);
    if (error)
        throw ToolError(ExitCode::UnwritableOutput,
                        "cannot write " + path_.string() + ": " + error.message());
    committed_ = true;
}

void checkOutputDirectory(const std::filesystem::path& path) {
    const std::filesystem::path directory = directoryOf(path);
    std::error_code error;
    if (!std::filesystem::is_directory(directory, error)) {
        throw ToolError(ExitCode::UnwritableOutput,
                        "cannot write " + path.string() + ": no directory " + directory.string());
    }
}

}  // namespace Tw::Tools
