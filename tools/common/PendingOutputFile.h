// A file that appears under its name only once it is complete. It is written under a hidden temporary
// name in the same directory, so that the final rename stays on one file system and is atomic; a reader
// never sees a half-written file, and a failed or cancelled run leaves any earlier file of that name as
// it was.
#pragma once

#include <filesystem>

namespace Tw::Tools {

class PendingOutputFile {
public:
    explicit PendingOutputFile(std::filesystem::path path);
    PendingOutputFile(const PendingOutputFile&) = delete;
    PendingOutputFile& operator=(const PendingOutputFile&) = delete;
    // Removes the temporary file unless it was committed.
    ~PendingOutputFile();

    // Where to write.
    const std::filesystem::path& temporaryPath() const { return temporaryPath_; }
    // Moves the written file to its name; throws ToolError with ExitCode::UnwritableOutput if it can't.
    void commit();

private:
    std::filesystem::path path_;
    std::filesystem::path temporaryPath_;
    bool committed_ = false;
};

// Throws ToolError with ExitCode::UnwritableOutput when the directory `path` is to go in does not exist,
// so that a mistyped output fails before a long render rather than after it.
void checkOutputDirectory(const std::filesystem::path& path);

}  // namespace Tw::Tools
