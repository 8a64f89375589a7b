#include "makers/lint/codes.h"

#include "makers/conversion/repairs.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace velmoranth::makers {
namespace {

using enum Severity;

constexpr std::array kCodes{
    CodeRow{"icon-name", error, "nothing looks for an icon under this name",
            "call it IconBundles/<identifier>-large.png",
            "An app's icon is looked for as IconBundles/<identifier>-large.png and under no other "
            "name: neither with a scale (@2x, @3x) nor with a device (~iphone, ~ipad), nor without "
            "-large."},
    CodeRow{"icon-place", error, "nothing looks for icons here",
            "put it into IconBundles as <identifier>-large.png",
            "Icons lie in the folder IconBundles of a theme, named by the identifiers of their "
            "apps. A picture beside that folder, or in a folder of icons that are named as people "
            "call the apps, is never opened."},
    CodeRow{"image-name", error, "nothing looks for the image under this name",
            "give it the name that is looked for",
            "The furniture of the home screen, masks, overlays and shadows have fixed names. This "
            "picture resembles one of them and has another scale or device in its name, under "
            "which no device looks for it."},
    CodeRow{"image-place", error, "nothing looks for the image here",
            "put it where it is looked for",
            "The picture has a name that is known from themes for other systems, in a folder that "
            "is never looked into."},
    CodeRow{"name-case", error, "the name that is looked for has other letters",
            "spell the name as it is looked for",
            "A phone tells capital and small letters apart, in the names of folders as in those of "
            "files. Nothing opens this one; the same name in other letters is looked for."},
    CodeRow{"picture-empty", error, "the file is empty", "save the picture again, or remove it",
            "A file of no bytes is no picture. For an icon that is worse than none: the name is "
            "there, so that the app's own icon does not show either."},
    CodeRow{"picture-broken", error, "no picture can be made of it",
            "save the picture again, or remove it",
            "The file has the name of a picture and cannot be read as one: it is cut off, damaged, "
            "or something else altogether. An icon of that name shows as a hole."},
    CodeRow{"mask-hides-everything", error, "icons that are cut out by it are not to be seen",
            "make it black where icons show and white where they are hidden, with 8 bits a channel",
            "A mask hides an icon where its first sample is white and shows it where it is black; "
            "transparency does not count. With this one nothing is left of an icon."},
    CodeRow{"mask-hides-nothing", error, "icons that are cut out by it stay as they are",
            "make it white where icons are hidden",
            "A mask hides an icon where its first sample is white and shows it where it is black. "
            "A black picture whose corners are clear is black everywhere to that rule."},
    CodeRow{"unreadable", error, "the file cannot be read",
            "let everybody read it, as with chmod a+r",
            "The file's rights, or a fault of the disk, keep it from being read. A phone reads it "
            "no more than this machine does, and a package is not made of it."},
    CodeRow{"list-broken", error, "the property list cannot be read", "mend the text at that place",
            "A list that does not parse is as good as none, and worse: since the file is there, no "
            "other theme's list and none of the device's is read in its place."},
    CodeRow{"sound-broken", error, "the sound cannot be played", "save it as a CAF file of PCM",
            "The sound is asked for and cannot be decoded, so the moment stays silent."},
    CodeRow{"name-not-text", error, "no phone can ask for a name of these bytes",
            "give it a name in UTF-8",
            "Files are asked for by texts. The bytes of this name are no text, which happens when "
            "an archive was packed with another encoding."},
    CodeRow{"icon-case", warning, "the app's identifier has other letters",
            "spell the identifier as the app does",
            "Upper and lower case count in identifiers, and no app is known that has this one's."},
    CodeRow{"icon-in-bundle", warning, "no app's icon is taken from here",
            "put a copy into IconBundles as <identifier>-large.png",
            "A picture in a bundle's folder shows where the bundle asks for it by its name. The "
            "home screen does not: it takes icons from IconBundles alone."},
    CodeRow{"settings-icon", warning, "the settings take no icon from here",
            "put a copy into Bundles/com.apple.Preferences",
            "The settings app's rows look for their icons in Bundles/com.apple.Preferences. A "
            "picture here shows only where the bundle of that name asks for it."},
    CodeRow{"part-name", warning, "the home screen looks for its part under another name",
            "put a copy of it where it is looked for",
            "The picture has the name of a part of the home screen in another scale or place. It "
            "shows where somebody asks for just this name, and not as that part."},
    CodeRow{"mask-alpha", warning, "it is meant to cut by its transparency, which does not count",
            "make it black where icons show and white where they are hidden",
            "A mask hides an icon where its first sample is white and shows it where it is black. "
            "Where it is clear and where it is not, this one has other samples than that."},
    CodeRow{"nested-theme", warning, "it is a theme of its own, which is not looked into here",
            "put it beside the theme",
            "A folder of a theme that has the folders of a theme itself, or is named so. Devices "
            "look for themes in /Library/Themes and not inside of them."},
    CodeRow{"similar-icon", warning, "an app gets no icon for the likeness of its identifier",
            "add a copy of the icon under the app's own identifier",
            "FuzzyBundleIdentifiers lists apps that other systems give the icon of an app whose "
            "identifier resembles theirs. Here an icon is looked for by its whole identifier."},
    CodeRow{"never-asked", warning, "nothing looks for this file",
            "give it the name of what it is meant for, or remove it",
            "No request that the file's path could be meant for opens it, on no kind of device and "
            "no system. docs/themes/files.md lists what is looked for."},
    CodeRow{"icon-not-square", warning, "the icon is not square", "make it as wide as it is high",
            "Icons are drawn into squares, so that this one is stretched."},
    CodeRow{"odd-name", warning, "nothing looks for it but an app that names scale or device",
            "take scale or device out of its name",
            "Apps ask for images without scale (@2x, @3x) and device (~ipad, ~iphone) in the name, "
            "and are given a file with the screen's scale in its name. A file with a device in its "
            "name is not looked for, except where the name is a fixed one."},
    CodeRow{"scale-missing", warning, "some devices show nothing of it",
            "add the file without a scale in its name",
            "The name without a scale is looked for, and devices find this file beside it when "
            "their screen has that scale. Those with another scale find nothing."},
    CodeRow{"broken-link", warning, "the link leads nowhere on a device",
            "put the file itself in its place",
            "A link in a theme is followed on the device, where this one's end is missing."},
    CodeRow{
        "calendar-missing", warning,
        "it says nothing of the calendar; as the first list it has the weekday across the top edge",
        "add CalendarIconDateSettings and CalendarIconDaySettings",
        "The first active theme with an Info.plist decides how weekday and day stand on the "
        "calendar's icon. With nothing said about them both stand at the top in the device's "
        "own font, over each other."},
    CodeRow{"calendar-text-missing", warning, "a text of the calendar's icon is not described",
            "add the missing settings",
            "One of CalendarIconDateSettings and CalendarIconDaySettings is there. The text of the "
            "other stands at the top edge in the device's own font."},
    CodeRow{"calendar-overlap", warning, "the day of the month is written across the weekday",
            "add its TextYoffset",
            "CalendarIconDateSettings without a TextYoffset begins at the icon's top edge, where "
            "CalendarIconDaySettings has the weekday."},
    CodeRow{"calendar-unmasked", warning, "the theme's mask does not cut the calendar's icon",
            "add IB-MaskIcons, yes or no",
            "The first active theme with an Info.plist decides whether the mask cuts the "
            "calendar's icon, by its key IB-MaskIcons. Without it the calendar alone keeps the "
            "corners of its file."},
    CodeRow{"calendar-font", warning, "a text of the calendar's icon is in another font",
            "name a font that the phone has, as in HelveticaNeue-Light",
            "Fonts are taken by their names from those that the phone has. A theme cannot bring "
            "one. Without a name, or with an unknown one, the device's own font is taken."},
    CodeRow{"calendar-color", warning, "a colour is not understood and shows as gray",
            "write six hexadecimal digits, as in FF8000",
            "Colours are six hexadecimal digits, with 0x before them or not. A number sign, rgb() "
            "and names of colours are not understood."},
    CodeRow{"calendar-value", warning, "a value is of a kind that is not read",
            "write a number, a text or a dictionary, as that key takes it",
            "A value of another kind counts as none, or as zero."},
    CodeRow{"calendar-key-misspelt", warning, "a key is spelt otherwise than it is read",
            "spell it as it is read",
            "Keys are read in exactly these letters, and this one is not read at all."},
    CodeRow{"calendar-style-sheet", warning, "a style sheet is not read",
            "write CalendarIconDateSettings and CalendarIconDaySettings in place of it",
            "CalendarIconDateStyle and CalendarIconDayStyle are style sheets for other systems. "
            "Nothing reads them here."},
    CodeRow{"sound-never-asked", warning, "no sound of this name is asked for",
            "give it one of the names in docs/themes/sounds.md, or remove it",
            "A theme's sounds have fixed names and end in .caf."},
    CodeRow{"icon-spare", note, "another file is taken for the same app", "remove it",
            "Only one picture of an app is looked for, and the theme has several."},
    CodeRow{"icon-clear", note, "every pixel of it is clear", "",
            "The app has a hole in the place of its icon. That may be what is wanted."},
    CodeRow{"icon-too-large", note, "it has more pixels than any icon shows",
            "make it 1024 pixels wide or less",
            "No device shows an icon of more than 180 pixels a side. A larger picture takes memory "
            "and time whenever it is drawn."},
    CodeRow{"not-png", note, "it is called .png and is none", "save it as a PNG file",
            "Pictures are told by their contents, so that it shows. A JPEG picture has no clear "
            "pixels, though, and other programs are misled by the name."},
    CodeRow{"one-device", note, "one kind of device shows it, and the other has none", "",
            "Phones and pads look for this part under names of their own, and the theme has it for "
            "one of them."},
    CodeRow{"clock-icon", note, "it has no effect on iOS 13, which draws the clock itself",
            "add Bundles/com.apple.SpringBoardHome/ClockIconBackgroundSquare.png for its face",
            "On iOS 12 the clock has an icon like every app. iOS 13 draws hands upon a face, and "
            "looks for the face under a name of its own."},
    CodeRow{"scaled-only", note, "only its name with a scale is there",
            "nothing needs to be done; the name without a scale would do the same",
            "The name without a scale is looked for, and a file with the screen's scale in its "
            "name is taken in its place, whether it is there or not. Every device that asks for "
            "this one finds it so."},
    CodeRow{"hidden", note, "another file of the theme is always taken before it", "",
            "Several names stand for one thing, and are tried in a fixed order. Another file of "
            "the theme comes first on every device."},
    CodeRow{"shared-name", note, "a picture of the same name shows in its place, or the reverse",
            "give both the same picture",
            "Images are kept by their names alone while a process runs. Where it asks for this one "
            "and for one of the same name elsewhere, it shows for both what it found first."},
    CodeRow{"leftover", note, "the name looks like one that was left over from editing",
            "remove it",
            "The name of a copy or of an earlier state. No app has such an identifier."},
    CodeRow{"newer-system", note, "icons for a dark or tinted screen are of newer systems",
            "remove it", "The systems that this engine is for look for one icon of an app alone."},
    CodeRow{"no-effect", note, "it has no effect", "",
            "The file or key is known from themes for other systems and is not read here."},
    CodeRow{"no-theme-file", note, "it belongs to no theme", "remove it",
            "What its maker works with, or what other systems look for: texts, scripts, "
            "wallpapers, files of drawing programs, the theme's own icon."},
    CodeRow{"clutter", note, "left behind by an archiver or a file manager", "remove it",
            "Files that the machine of the maker has put there by itself."},
};

}  // namespace

std::span<const CodeRow> codes() {
    return kCodes;
}

const CodeRow* codeNamed(std::string_view code) {
    const auto* const found = std::ranges::find(kCodes, code, &CodeRow::code);
    return found == kCodes.end() ? nullptr : found;
}

std::string_view wordOf(Severity severity) {
    static constexpr std::array<std::string_view, 3> kWords{"error", "warning", "note"};
    return kWords.at(static_cast<std::size_t>(severity));
}

std::string codesAsMarkdown() {
    std::string text =
        "| Code | Severity | What is found | `convert` |\n| --- | --- | --- | --- |\n";
    for (const CodeRow& row : kCodes) {
        const RepairRow* const repair = repairOf(row.code);
        text += "| `" + std::string(row.code) + "` | " + std::string(wordOf(row.severity)) + " | " +
                std::string(row.reason) + " | " +
                (repair == nullptr ? "" : std::string(repair->does)) + " |\n";
    }
    return text;
}

}  // namespace velmoranth::makers
