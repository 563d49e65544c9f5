#include "velloro/Pictures/RingCommand.h"

#include "CoreGraphics/CGImage.h"
#include "Foundation/Files/NSFileManager.h"
#include "Foundation/Text/String.h"
#include "OxKit/RuntimeError.h"
#include "velloro/Options/Arguments.h"
#include "velloro/Output/GrowingFile.h"
#include "velloro/Pictures/RingArguments.h"

#include <filesystem>
#include <memory>

#include <CLI/CLI.hpp>

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

class Adder {
 public:
  explicit Adder(CLI::App& command) : command_(command) {}

  CLI::Option* operator()(const char* name, auto& value, const char* placeholder,
                          const char* help) {
    return command_.add_option(name, value, help)->type_name(placeholder)->group(group_);
  }
  void flag(const char* name, bool& value, const char* help) {
    command_.add_flag(name, value, help)->disable_flag_override()->group(group_);
  }
  void group(const char* name) { group_ = name; }

 private:
  CLI::App& command_;
  std::string group_;
};

void addLook(Adder& add, RingArguments& ring) {
  add.group("The task");
  add("--status", ring.status, "STATUS",
      "The stored status: c, m, s, nm, a, i_mwi, nc_swi, … (default: i_mwoi)");
  add("--progress", ring.progress, "P", "The filled part, 0 to 1 (default: 0)");
  add("--segments", ring.segments, "N",
      "The number of steps that notches divide the track into (default: 1)");
  add("--sub-progress", ring.subProgress, "P", "The filled part of a step, drawn inside, 0 to 1");
  add("--track-progress", ring.trackProgress, "P",
      "Where the solid part of the open track ends, 0 to 1 (default: 1)");
  add("--timer", ring.timer, "SECONDS", "The duration of a running timer; a dot shows its seconds");
  auto* icon = add("--icon", ring.icon, "NAME", "An icon by its name, such as water_glass");
  auto* emoji = add("--emoji", ring.emoji, "E", "An emoji in the icon's place");
  auto* monogram = add("--monogram", ring.monogram, "M", "Letters in the icon's place");
  icon->excludes(emoji)->excludes(monogram);
  emoji->excludes(monogram);
  add.flag("--slash", ring.hasSlash, "Strikes the icon through");
  add("--caption", ring.caption, "TEXT", "The line below the icon");
  add("--top-caption", ring.topCaption, "TEXT", "The line above the icon");
  add("--sign", ring.signs, "SIGN",
      "A sign behind the caption, such as bestStreak or multiDay; several may be given");
  add("--top-sign", ring.topSigns, "SIGN", "A sign behind the top caption");
  add("--badge", ring.badges, "PLACE[:ICON]",
      "A badge, such as topTrailing:em_🚲 or bottomLeadingInside:mg_JD; several may be given");
}

void addColors(Adder& add, RingArguments& ring) {
  add.group("The look");
  add("--theme", ring.theme, "SCHEME", "The page's colour scheme (default: orange)");
  add("--mode", ring.mode, "MODE", "normal, alternate, white or black (default: normal)");
  add("--position", ring.position, "N",
      "The task's place on the page, from 0: schemes of several colours take turns");
  add.flag("--grand-slam", ring.isGrandSlam,
           "Uses the colours of a day on which everything is done");
  add.flag("--anticlockwise", ring.isAntiClockwise, "Fills the track anticlockwise");
  add.flag("--rounded", ring.hasRoundedCaps, "Draws round ends of the filled part");
  add("--size", ring.size, "POINTS", "The ring's diameter (default: 84)");
  add("--scale", ring.scale, "N", "Pixels per point (default: 2)");
  add.flag("--transparent", ring.isTransparent, "Draws nothing behind the ring");
}

}  // namespace

void addRingCommand(CLI::App& app) {
  auto options = std::make_shared<RingOptions>();
  CLI::App* command = app.add_subcommand("ring", "Draws a task's ring to a PNG file");
  Adder add(*command);
  add.group("The picture");
  add("--png", options->png, "FILE", "The file to write; - is the standard output");
  command->add_flag("--sheet", options->isSheet, "Draws a sheet of all schemes in all statuses")
      ->disable_flag_override()
      ->group("The picture")
      ->excludes(add("--animate", options->animate, "check",
                     "Draws an animation in which the ring fills and is checked"));
  add("--frames", options->frames, "DIR", "The folder for the single pictures of an animation");
  add("--fps", options->framesPerSecond, "N", "Pictures per second (default: 60)");
  addLook(add, options->ring);
  addColors(add, options->ring);
  command->footer(
      "\"velloro themes\" lists the schemes, \"velloro icons\" the icons.\n\n"
      "Examples:\n"
      "  velloro ring --progress 0.3 --segments 3 --icon water_glass --png ring.png\n"
      "  velloro ring --status c --emoji 🚲 --theme redBlue --mode black --size 300 --png - | "
      "display\n"
      "  velloro ring --sheet --progress 0.6 --icon book --caption 12 --scale 1 --png sheet.png\n"
      "  velloro ring --animate check --icon book --frames frames --fps 60 --png check.png");
  command->callback([options] { run(*options); });
}

}  // namespace velloro
