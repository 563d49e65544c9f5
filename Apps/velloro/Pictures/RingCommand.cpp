#include "velloro/Pictures/RingCommand.h"

#include "CoreGraphics/CGImage.h"
#include "Foundation/Files/NSFileManager.h"
#include "Foundation/Text/String.h"
#include "OxKit/RuntimeError.h"
#include "velloro/Options/Arguments.h"
#include "velloro/Options/Command.h"
#include "velloro/Output/GrowingFile.h"
#include "velloro/Pictures/RingArguments.h"

#include <filesystem>

namespace velloro {
namespace {

struct RingOptions {
  RingArguments ring;
  std::optional<std::string> png, animate, frames, framesPerSecond;
  bool isSheet = false;
};

std::string pngOf(const CGImage& image) {
  const auto bytes = image.pngData();
  if (!bytes) throw RuntimeError("the picture can't be made");
  return std::string(bytes->text());
}

void animate(const RingOptions& options) {
  if (*options.animate != "check") {
    throw UsageError("--animate", *options.animate, "not an animation; write check");
  }
  const std::string rate = options.framesPerSecond.value_or("60");
  const auto framesPerSecond = countBetween("--fps", rate, 1, 240);
  const RingPicture picture = options.ring.picture();
  std::optional<std::filesystem::path> folder;
  if (options.frames) {
    folder = folderArgument("--frames", *options.frames);
    const auto made = NSFileManager::createDirectory(*folder, NewItemAccess::byUmask);
    if (!made) throw Error(*made.error());
  }
  std::optional<GrowingFile> file;
  if (options.png) file.emplace(*options.png, "--png");
  picture.playChecking(static_cast<std::uint16_t>(framesPerSecond),
                       [&](const CGImage& image, const AnimationFrame& frame) {
                         if (folder) {
                           writeFile(pngOf(image),
                                     *folder / stringWithFormat("frame-%04u.png", frame.index),
                                     "--frames");
                         }
                         if (file) file->add(animatedPNGPiece(image, frame).value().text());
                       });
  if (file) file->finish();
}

void run(const RingOptions& options) {
  if (options.animate) {
    if (!options.png && !options.frames) {
      throw UsageError("a --png or a --frames is needed, to say where the animation goes");
    }
    return animate(options);
  }
  for (const auto& [name, value] :
       {std::pair("--frames", options.frames), {"--fps", options.framesPerSecond}}) {
    if (value) throw UsageError(name, *value, "only with --animate");
  }
  if (!options.png) throw UsageError("a --png is needed, to say where the picture goes");
  const RingPicture picture = options.ring.picture();
  writeFile(pngOf(*(options.isSheet ? picture.sheet() : picture.image())), *options.png, "--png");
}

void addPicture(const Command& command, RingOptions& options) {
  command.option("--png", options.png, "FILE", "The file to write; - is the standard output");
  command.flag("--sheet", options.isSheet, "Draws a sheet of all schemes in all statuses");
  command
      .option("--animate", options.animate, "check",
              "Draws an animation in which the ring fills and is checked")
      .excludes({"--sheet"});
  command.option("--frames", options.frames, "DIR",
                 "The folder for the single pictures of an animation");
  command.option("--fps", options.framesPerSecond, "N", "Pictures per second (default: 60)");
}

void addTask(const Command& command, RingArguments& ring) {
  command.option("--status", ring.status, "STATUS",
                 "The stored status: c, m, s, nm, a, i_mwi, nc_swi, … (default: i_mwoi)");
  command.option("--progress", ring.progress, "P", "The filled part, 0 to 1 (default: 0)");
  command.option("--segments", ring.segments, "N",
                 "The number of steps that notches divide the track into (default: 1)");
  command.option("--sub-progress", ring.subProgress, "P",
                 "The filled part of a step, drawn inside, 0 to 1");
  command.option("--track-progress", ring.trackProgress, "P",
                 "Where the solid part of the open track ends, 0 to 1 (default: 1)");
  command.option("--timer", ring.timer, "SECONDS",
                 "The duration of a running timer; a dot shows its seconds");
  command.option("--icon", ring.icon, "NAME", "An icon by its name, such as water_glass");
  command.option("--emoji", ring.emoji, "E", "An emoji in the icon's place").excludes({"--icon"});
  command.option("--monogram", ring.monogram, "M", "Letters in the icon's place")
      .excludes({"--icon", "--emoji"});
  command.flag("--slash", ring.hasSlash, "Strikes the icon through");
  command.option("--caption", ring.caption, "TEXT", "The line below the icon");
  command.option("--top-caption", ring.topCaption, "TEXT", "The line above the icon");
  command.option("--sign", ring.signs, "SIGN",
                 "A sign behind the caption, such as bestStreak or multiDay; several may be given");
  command.option("--top-sign", ring.topSigns, "SIGN", "A sign behind the top caption");
  command.option("--badge", ring.badges, "PLACE[:ICON]",
                 "A badge, such as topTrailing:em_🚲 or bottomLeadingInside:mg_JD; several may be "
                 "given");
}

void addLook(const Command& command, RingArguments& ring) {
  command.option("--theme", ring.theme, "SCHEME", "The page's colour scheme (default: orange)");
  command.option("--mode", ring.mode, "MODE",
                 "normal, alternate, white or black (default: normal)");
  command.option("--position", ring.position, "N",
                 "The task's place on the page, from 0: schemes of several colours take turns");
  command.flag("--grand-slam", ring.isGrandSlam,
               "Uses the colours of a day on which everything is done");
  command.flag("--anticlockwise", ring.isAntiClockwise, "Fills the track anticlockwise");
  command.flag("--rounded", ring.hasRoundedCaps, "Draws round ends of the filled part");
  command.option("--size", ring.size, "POINTS", "The ring's diameter (default: 84)");
  command.option("--scale", ring.scale, "N", "Pixels per point (default: 2)");
  command.flag("--transparent", ring.isTransparent, "Draws nothing behind the ring");
}

}  // namespace

void addRingCommand(const Command& app) {
  const auto [command, options] = app.subcommand("ring", "Draws a task's ring to a PNG file", run);
  addPicture(command.group("The picture"), options);
  addTask(command.group("The task"), options.ring);
  addLook(command.group("The look"), options.ring);
  command.footer(
      "\"velloro themes\" lists the schemes, \"velloro icons\" the icons.\n\n"
      "Examples:\n"
      "  velloro ring --progress 0.3 --segments 3 --icon water_glass --png ring.png\n"
      "  velloro ring --status c --emoji 🚲 --theme redBlue --mode black --size 300 --png - | "
      "display\n"
      "  velloro ring --sheet --progress 0.6 --icon book --caption 12 --scale 1 --png sheet.png\n"
      "  velloro ring --animate check --icon book --frames frames --fps 60 --png check.png");
}

}  // namespace velloro
