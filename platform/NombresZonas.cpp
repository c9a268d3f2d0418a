#include "platform/NombresZonas.h"

#include <algorithm>
#include <iterator>

namespace vel {
namespace {

// The zone names of Windows and the zones of the tz database that they stand for: the public mapping of the
// Unicode Common Locale Data Repository (windowsZones, territory 001), in the order of CompareText. Older
// tables differ in two points: Mazatlan stands for "Mountain Standard Time (Mexico)" since Chihuahua keeps
// central time, and Bishkek for "Central Asia Standard Time" since all of Kazakhstan is five hours ahead of
// universal time (March 2024).
constexpr ZonaWindows kZonas[kZonasWindows] = {
    {u"Afghanistan Standard Time", "Asia/Kabul"},
    {u"Alaskan Standard Time", "America/Anchorage"},
    {u"Aleutian Standard Time", "America/Adak"},
    {u"Altai Standard Time", "Asia/Barnaul"},
    {u"Arab Standard Time", "Asia/Riyadh"},
    {u"Arabian Standard Time", "Asia/Dubai"},
    {u"Arabic Standard Time", "Asia/Baghdad"},
    {u"Argentina Standard Time", "America/Argentina/Buenos_Aires"},
    {u"Astrakhan Standard Time", "Europe/Astrakhan"},
    {u"Atlantic Standard Time", "America/Halifax"},
    {u"AUS Central Standard Time", "Australia/Darwin"},
    {u"Aus Central W. Standard Time", "Australia/Eucla"},
    {u"AUS Eastern Standard Time", "Australia/Sydney"},
    {u"Azerbaijan Standard Time", "Asia/Baku"},
    {u"Azores Standard Time", "Atlantic/Azores"},
    {u"Bahia Standard Time", "America/Bahia"},
    {u"Bangladesh Standard Time", "Asia/Dhaka"},
    {u"Belarus Standard Time", "Europe/Minsk"},
    {u"Bougainville Standard Time", "Pacific/Bougainville"},
    {u"Canada Central Standard Time", "America/Regina"},
    {u"Cape Verde Standard Time", "Atlantic/Cape_Verde"},
    {u"Caucasus Standard Time", "Asia/Yerevan"},
    {u"Cen. Australia Standard Time", "Australia/Adelaide"},
    {u"Central America Standard Time", "America/Guatemala"},
    {u"Central Asia Standard Time", "Asia/Bishkek"},
    {u"Central Brazilian Standard Time", "America/Cuiaba"},
    {u"Central Europe Standard Time", "Europe/Budapest"},
    {u"Central European Standard Time", "Europe/Warsaw"},
    {u"Central Pacific Standard Time", "Pacific/Guadalcanal"},
    {u"Central Standard Time", "America/Chicago"},
    {u"Central Standard Time (Mexico)", "America/Mexico_City"},
    {u"Chatham Islands Standard Time", "Pacific/Chatham"},
    {u"China Standard Time", "Asia/Shanghai"},
    {u"Cuba Standard Time", "America/Havana"},
    {u"Dateline Standard Time", "Etc/GMT+12"},
    {u"E. Africa Standard Time", "Africa/Nairobi"},
    {u"E. Australia Standard Time", "Australia/Brisbane"},
    {u"E. Europe Standard Time", "Europe/Chisinau"},
    {u"E. South America Standard Time", "America/Sao_Paulo"},
    {u"Easter Island Standard Time", "Pacific/Easter"},
    {u"Eastern Standard Time", "America/New_York"},
    {u"Eastern Standard Time (Mexico)", "America/Cancun"},
    {u"Egypt Standard Time", "Africa/Cairo"},
    {u"Ekaterinburg Standard Time", "Asia/Yekaterinburg"},
    {u"Fiji Standard Time", "Pacific/Fiji"},
    {u"FLE Standard Time", "Europe/Kyiv"},
    {u"Georgian Standard Time", "Asia/Tbilisi"},
    {u"GMT Standard Time", "Europe/London"},
    {u"Greenland Standard Time", "America/Nuuk"},
    {u"Greenwich Standard Time", "Atlantic/Reykjavik"},
    {u"GTB Standard Time", "Europe/Bucharest"},
    {u"Haiti Standard Time", "America/Port-au-Prince"},
    {u"Hawaiian Standard Time", "Pacific/Honolulu"},
    {u"India Standard Time", "Asia/Kolkata"},
    {u"Iran Standard Time", "Asia/Tehran"},
    {u"Israel Standard Time", "Asia/Jerusalem"},
    {u"Jordan Standard Time", "Asia/Amman"},
    {u"Kaliningrad Standard Time", "Europe/Kaliningrad"},
    {u"Kamchatka Standard Time", "Asia/Kamchatka"},
    {u"Korea Standard Time", "Asia/Seoul"},
    {u"Libya Standard Time", "Africa/Tripoli"},
    {u"Line Islands Standard Time", "Pacific/Kiritimati"},
    {u"Lord Howe Standard Time", "Australia/Lord_Howe"},
    {u"Magadan Standard Time", "Asia/Magadan"},
    {u"Magallanes Standard Time", "America/Punta_Arenas"},
    {u"Marquesas Standard Time", "Pacific/Marquesas"},
    {u"Mauritius Standard Time", "Indian/Mauritius"},
    {u"Mid-Atlantic Standard Time", "Etc/GMT+2"},
    {u"Middle East Standard Time", "Asia/Beirut"},
    {u"Montevideo Standard Time", "America/Montevideo"},
    {u"Morocco Standard Time", "Africa/Casablanca"},
    {u"Mountain Standard Time", "America/Denver"},
    {u"Mountain Standard Time (Mexico)", "America/Mazatlan"},
    {u"Myanmar Standard Time", "Asia/Yangon"},
    {u"N. Central Asia Standard Time", "Asia/Novosibirsk"},
    {u"Namibia Standard Time", "Africa/Windhoek"},
    {u"Nepal Standard Time", "Asia/Kathmandu"},
    {u"New Zealand Standard Time", "Pacific/Auckland"},
    {u"Newfoundland Standard Time", "America/St_Johns"},
    {u"Norfolk Standard Time", "Pacific/Norfolk"},
    {u"North Asia East Standard Time", "Asia/Irkutsk"},
    {u"North Asia Standard Time", "Asia/Krasnoyarsk"},
    {u"North Korea Standard Time", "Asia/Pyongyang"},
    {u"Omsk Standard Time", "Asia/Omsk"},
    {u"Pacific SA Standard Time", "America/Santiago"},
    {u"Pacific Standard Time", "America/Los_Angeles"},
    {u"Pacific Standard Time (Mexico)", "America/Tijuana"},
    {u"Pakistan Standard Time", "Asia/Karachi"},
    {u"Paraguay Standard Time", "America/Asuncion"},
    {u"Qyzylorda Standard Time", "Asia/Qyzylorda"},
    {u"Romance Standard Time", "Europe/Paris"},
    {u"Russia Time Zone 10", "Asia/Srednekolymsk"},
    {u"Russia Time Zone 11", "Asia/Kamchatka"},
    {u"Russia Time Zone 3", "Europe/Samara"},
    {u"Russian Standard Time", "Europe/Moscow"},
    {u"SA Eastern Standard Time", "America/Cayenne"},
    {u"SA Pacific Standard Time", "America/Bogota"},
    {u"SA Western Standard Time", "America/La_Paz"},
    {u"Saint Pierre Standard Time", "America/Miquelon"},
    {u"Sakhalin Standard Time", "Asia/Sakhalin"},
    {u"Samoa Standard Time", "Pacific/Apia"},
    {u"Sao Tome Standard Time", "Africa/Sao_Tome"},
    {u"Saratov Standard Time", "Europe/Saratov"},
    {u"SE Asia Standard Time", "Asia/Bangkok"},
    {u"Singapore Standard Time", "Asia/Singapore"},
    {u"South Africa Standard Time", "Africa/Johannesburg"},
    {u"South Sudan Standard Time", "Africa/Juba"},
    {u"Sri Lanka Standard Time", "Asia/Colombo"},
    {u"Sudan Standard Time", "Africa/Khartoum"},
    {u"Syria Standard Time", "Asia/Damascus"},
    {u"Taipei Standard Time", "Asia/Taipei"},
    {u"Tasmania Standard Time", "Australia/Hobart"},
    {u"Tocantins Standard Time", "America/Araguaina"},
    {u"Tokyo Standard Time", "Asia/Tokyo"},
    {u"Tomsk Standard Time", "Asia/Tomsk"},
    {u"Tonga Standard Time", "Pacific/Tongatapu"},
    {u"Transbaikal Standard Time", "Asia/Chita"},
    {u"Turkey Standard Time", "Europe/Istanbul"},
    {u"Turks And Caicos Standard Time", "America/Grand_Turk"},
    {u"Ulaanbaatar Standard Time", "Asia/Ulaanbaatar"},
    {u"US Eastern Standard Time", "America/Indiana/Indianapolis"},
    {u"US Mountain Standard Time", "America/Phoenix"},
    {u"UTC", "Etc/UTC"},
    {u"UTC+12", "Etc/GMT-12"},
    {u"UTC+13", "Etc/GMT-13"},
    {u"UTC-02", "Etc/GMT+2"},
    {u"UTC-08", "Etc/GMT+8"},
    {u"UTC-09", "Etc/GMT+9"},
    {u"UTC-11", "Etc/GMT+11"},
    {u"Venezuela Standard Time", "America/Caracas"},
    {u"Vladivostok Standard Time", "Asia/Vladivostok"},
    {u"Volgograd Standard Time", "Europe/Volgograd"},
    {u"W. Australia Standard Time", "Australia/Perth"},
    {u"W. Central Africa Standard Time", "Africa/Lagos"},
    {u"W. Europe Standard Time", "Europe/Berlin"},
    {u"W. Mongolia Standard Time", "Asia/Hovd"},
    {u"West Asia Standard Time", "Asia/Tashkent"},
    {u"West Bank Standard Time", "Asia/Hebron"},
    {u"West Pacific Standard Time", "Pacific/Port_Moresby"},
    {u"Yakutsk Standard Time", "Asia/Yakutsk"},
    {u"Yukon Standard Time", "America/Whitehorse"},
};

}  // namespace

const ZonaWindows* BuscaZonaWindows(std::u16string_view nombre) noexcept {
  const auto* const it = std::lower_bound(
      std::begin(kZonas), std::end(kZonas), nombre,
      [](const ZonaWindows& z, std::u16string_view n) { return CompareText(z.nombre, n) < 0; });
  return it != std::end(kZonas) && SameText(it->nombre, nombre) ? it : nullptr;
}

std::span<const ZonaWindows> ZonasWindows() noexcept { return kZonas; }

UnicodeString NombreVerano(std::u16string_view estandar) {
  return StringReplace(estandar, u"Standard", u"Daylight");
}

std::size_t IndiceZonaWindows(const ZonaWindows& zona) noexcept {
  return static_cast<std::size_t>(&zona - std::begin(kZonas));
}

}  // namespace vel
