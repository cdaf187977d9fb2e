#include "helpers/fontadder/VendorNames.h"

#include "helpers/fontadder/NameText.h"

#include <algorithm>
#include <cctype>
#include <string_view>

namespace kerval::adder {

namespace {

struct Vendor
{
    std::string_view id;
    std::string_view name;
};

// clang-format off
constexpr Vendor vendors[] = {
    {"1ASC", "Ascender Corporation"},
    {"1KTF", "Kief Type Foundry"},
    {"2REB", "2Rebels"},
    {"39BC", "Finley's Barcode Fonts"},
    {"3ip", "Three Islands Press"},
    {"5hrs", "Daniel Kahn Gillmor"},
    {"ABAT", "Abattis"},
    {"ACE", "Modular Infotech"},
    {"ACUT", "Acute Type"},
    {"ADBE", "Adobe"},
    {"ADBO", "Adobe"},
    {"ADFP", "Arkandis Digital Foundry"},
    {"AGFA", "Agfa Monotype"},
    {"ALIF", "Alif Type"},
    {"APPL", "Apple"},
    {"ARBO", "Arbortext"},
    {"ARCH", "Architype"},
    {"ARPH", "Arphic Technology"},
    {"ARTY", "Artistic Imposter"},
    {"ASL", "Abneil Software"},
    {"ASYM", "Applied Symbols"},
    {"AURE", "Aure Font Design"},
    {"AZLS", "Azalea Software"},
    {"B&H", "Bigelow & Holmes"},
    {"BARS", "CIA (Bar Codes)"},
    {"BASE", "Baseline Fonts"},
    {"BCP", "Barcode Products"},
    {"BERT", "Berthold"},
    {"BITM", "Bitmap Software"},
    {"BITS", "Bitstream"},
    {"BORW", "em2 Solutions"},
    {"BOYB", "Boyblue"},
    {"BRTC", "Bear Rock Technologies"},
    {"BWFW", "B/W Fontworks"},
    {"C&C", "Carter & Cone"},
    {"C21", "Club 21"},
    {"CANO", "Canon"},
    {"CASL", "H.W. Caslon & Company"},
    {"CB", "Christian Büning Visuelle Kommunikation"},
    {"COOL", "Cool Fonts"},
    {"CTDL", "China Type Design"},
    {"CYRE", "Cyreal"},
    {"DAMA", "Dalton Maag"},
    {"DELV", "Delve Fonts"},
    {"DFS", "Datascan Font Service"},
    {"DS", "Dainippon Screen"},
    {"DSCI", "Design Science"},
    {"DSST", "Dubina Nikolay"},
    {"DTC", "Digital Typeface Corporation"},
    {"DTL", "Dutch Type Library"},
    {"DTPS", "DTP Software"},
    {"DUXB", "Duxbury Systems"},
    {"DYNA", "DynaComware"},
    {"ECF", "Emerald City Fontwerks"},
    {"EDGE", "Rivers Edge"},
    {"EFF", "Electronic Font Foundry"},
    {"EFI", "Elfring Fonts"},
    {"EFNT", "E Fonts"},
    {"ELSE", "Elseware"},
    {"EMGR", "Emigre"},
    {"ERAM", "eRAMA International"},
    {"ESIG", "E-Signature"},
    {"EVER", "Evertype"},
    {"FBI", "Font Bureau"},
    {"FNTF", "Fontfoundry"},
    {"FONT", "Font Source"},
    {"FS", "Formula Solutions"},
    {"FSFS", "David J. Perry"},
    {"FSI", "FontShop International"},
    {"FSMI", "Fontsmith"},
    {"FTFT", "FontFont"},
    {"FWKS", "Fontworks"},
    {"GALA", "Galapagos Design Group"},
    {"GALO", "Gerald Gallo"},
    {"GARI", "Gary Ritchie"},
    {"GD", "GD Fonts"},
    {"GLCF", "GLC Foundry"},
    {"GLYF", "Glyph Systems"},
    {"GNU", "GNU Project"},
    {"GOAT", "Dingbat Dungeon"},
    {"GOHE", "GoHebrew"},
    {"GOOG", "Google"},
    {"GPI", "Gamma Productions"},
    {"H&FJ", "Hoefler & Frere-Jones"},
    {"HFJ", "Hoefler & Frere-Jones"},
    {"HILL", "Hill Systems"},
    {"HOUS", "House Industries"},
    {"HP", "Hewlett-Packard"},
    {"HT", "Huerta Tipográfica"},
    {"HY", "HanYang System"},
    {"IBM", "IBM"},
    {"IDEE", "Idee Typography"},
    {"IDF", "International Digital Fonts"},
    {"IMPR", "Impress"},
    {"INGT", "Ingrimayne Type"},
    {"INRA", "INRAY"},
    {"INVC", "Invoice Central"},
    {"IPA", "Information-technology Promotion Agency"},
    {"ITC", "International Typeface Corporation"},
    {"ITF", "Indian Type Foundry"},
    {"ITFO", "Indian Type Foundry"},
    {"JAKE", "Jake Tilson Studio"},
    {"JB", "JetBrains"},
    {"JPTT", "Jeremy Tankard Typography"},
    {"KATF", "Kingsley/ATF"},
    {"KLIM", "Klim Type Foundry"},
    {"LANS", "Lanston Type"},
    {"LARA", "Larabie Fonts"},
    {"LEAF", "Interleaf"},
    {"LETR", "Letraset"},
    {"LGX", "Logix Research Institute"},
    {"LHF", "Letterhead Fonts"},
    {"LING", "Linguist's Software"},
    {"LINO", "Linotype"},
    {"LNTO", "Lineto"},
    {"LP", "LetterPerfect"},
    {"LTRX", "Lighttracks"},
    {"LTTR", "LettError"},
    {"LXGW", "LXGW"},
    {"MC", "Cerajewski Computer Consulting"},
    {"MF", "Magic Fonts"},
    {"MILL", "Millan"},
    {"MJ", "Majus"},
    {"MLGC", "Micrologic Software"},
    {"MODI", "Modular Infotech"},
    {"MONB", "Monib"},
    {"MONE", "Meta One"},
    {"MONO", "Monotype"},
    {"MONS", "Monotype"},
    {"MRSW", "Morisawa"},
    {"MS", "Microsoft"},
    {"MSCR", "Majus"},
    {"MT", "Monotype"},
    {"MTY", "Motoya"},
    {"MVB", "MVB Fonts"},
    {"NB", "No Bodoni Typography"},
    {"NDCT", "Neufville Digital"},
    {"NEC", "NEC"},
    {"NORF", "Norfok"},
    {"NOVA", "Novatype"},
    {"OMNI", "Omnibus-Type"},
    {"OOoH", "Oracle"},
    {"ORBI", "Orbit Enterprises"},
    {"P22", "P22 Type Foundry"},
    {"PARA", "ParaType"},
    {"PDWX", "Parsons Design Workx"},
    {"PF", "Phil's Fonts"},
    {"PLAY", "Playtype"},
    {"PRFS", "Production First Software"},
    {"PSY", "PsyOps"},
    {"PTF", "Porchez Typofonderie"},
    {"QMSI", "QMS"},
    {"QRAT", "Quadrat Communications"},
    {"QUQA", "Quote-Unquote Apps"},
    {"RICO", "Ricoh"},
    {"RIXF", "FontRix"},
    {"RKFN", "R K Fonts"},
    {"RSMS", "Rasmus Andersson"},
    {"RST", "Rosetta Type Foundry"},
    {"RUDY", "RudynFluffy"},
    {"RYOB", "Ryobi"},
    {"SAND", "Sandoll"},
    {"SAX", "s.a.x. Software"},
    {"SEAN", "The FontSite"},
    {"SFI", "Software Friends"},
    {"SFUN", "Soft Union"},
    {"SG", "Scooter Graphics"},
    {"SHMI", "Mikhail Sharanda"},
    {"SIG", "Signature Software"},
    {"SIL", "SIL International"},
    {"SIT", "Summit Information Technologies"},
    {"SKZ", "Celtic Lady's Fonts"},
    {"SMC", "Swathanthra Malayalam Computing"},
    {"SN", "SourceNet"},
    {"SOHO", "Soft Horizons"},
    {"SOS", "Standing Ovations Software"},
    {"SRC", "Source Foundry"},
    {"SRCF", "Source Foundry"},
    {"STC", "Sorkin Type"},
    {"STF", "Brian Sooy & Co"},
    {"STIX", "STI Pub"},
    {"STOR", "Storm Type Foundry"},
    {"STYP", "Stone Type Foundry"},
    {"SUNW", "Sun Microsystems"},
    {"SWFT", "Swfte International"},
    {"SWTY", "Swiss Typefaces"},
    {"SYN", "SynFonts"},
    {"TDR", "Tansin A. Darcos & Co."},
    {"TF", "Treacyfaces"},
    {"TILD", "SIA Tilde"},
    {"TPTC", "Test Pilot Collective"},
    {"TR", "Type Revivals"},
    {"TS", "TamilSoft"},
    {"TYPA", "Typadelic"},
    {"TYPE", "Type Associates"},
    {"TYPO", "Typodermic"},
    {"TYPR", "Type Project"},
    {"UA", "UnAuthorized Type"},
    {"URW", "URW++"},
    {"UT", "Unitype"},
    {"VKP", "Vijay K. Patel"},
    {"VLKF", "Visualogik"},
    {"VLNL", "VetteLetters.nl"},
    {"VOG", "Martin Vogel"},
    {"VROM", "Vladimir Romanov"},
    {"WASP", "Wasp Barcode"},
    {"WL", "Writ Large Fonts"},
    {"WM", "Webmakers India"},
    {"XFC", "Xerox Font Services"},
    {"YDI", "YoonDesign"},
    {"YDS", "YoonDesign"},
    {"ZSFT", "ZSoft"},
    {"newt", "Vernon Adams"},
    {"tyPL", "tyPoland"},
};
// clang-format on

// Ids that font editors write into the fonts of all their users, and those that say that nobody is named.
constexpr std::string_view editorIds[] = {"ALTS", "HL", "LYED", "MACR", "PFED", "PYRS"};
constexpr std::string_view nobodysIds[] = {"", "NONE", "UKWN", "UNKN", "XXXX"};

// Longer texts in the manufacturer's place are notices.
constexpr std::size_t longestName = 64;

// Makers whose names stand in the notices of fonts that carry no id, Type 1 fonts above all.
constexpr Vendor namedInNotices[] = {
    {"Adobe", "Adobe"},
    {"Bigelow", "Bigelow & Holmes"},
    {"Bitstream", "Bitstream"},
    {"International Typeface Corporation", "International Typeface Corporation"},
    {"ITC ", "International Typeface Corporation"},
    {"Linotype", "Linotype"},
    {"Monotype", "Monotype"},
    {"ParaType", "ParaType"},
    {"ParaGraph", "ParaType"},
    {"URW", "URW++"},
    {"American Mathematical Society", "American Mathematical Society"},
    {"AMS", "American Mathematical Society"},
    {"GUST", "GUST e-foundry"},
};

std::string upper(std::string text)
{
    for (char& c : text)
        c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return text;
}

std::string nameOfId(const std::string& id)
{
    const std::string folded = upper(id);
    for (const Vendor& vendor : vendors)
        if (upper(std::string(vendor.id)) == folded)
            return std::string(vendor.name);
    return {};
}

template <std::size_t N>
bool isOneOf(const std::string_view (&ids)[N], const std::string& id)
{
    return std::find(std::begin(ids), std::end(ids), upper(id)) != std::end(ids);
}

// The first line, if it can be a name.
std::string nameOfManufacturer(const std::string& manufacturer)
{
    const std::string line = trimmed(std::string_view(manufacturer).substr(0, manufacturer.find('\n')));
    return line.size() <= longestName ? line : std::string();
}

std::string nameInNotices(const std::string& notices)
{
    for (const Vendor& maker : namedInNotices)
        if (notices.find(maker.id) != std::string::npos)
            return std::string(maker.name);
    return {};
}

} // namespace

VendorNames VendorNames::of(const std::string& id, const std::string& manufacturer, const std::string& notices)
{
    std::string maker = nameOfManufacturer(manufacturer);
    if (!isOneOf(editorIds, id) && !isOneOf(nobodysIds, id)) {
        const std::string known = nameOfId(id);
        if (!known.empty())
            return {known, known};
        return {maker.empty() ? id : maker, id};
    }
    if (maker.empty())
        maker = nameInNotices(notices);
    if (maker.empty() && isOneOf(editorIds, id))
        maker = id;
    return {maker, maker};
}

} // namespace kerval::adder
