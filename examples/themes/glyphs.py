"""The line drawings of Kilnware's icons, as data.

A drawing is a list of marks, each a letter and its numbers, in hundredths of the icon's side:

    S path          a line along a path          F path          a filled path
    C x y r         a ring                       D x y r         a dot
    E x y rx ry     an upright oval ring         R x y w h r     a rectangle with round corners, in lines
    B x y w h r     the same, filled             A x y r from to a part of a ring, in degrees, clockwise
    T degrees       turns what follows about the middle

A path has the letters M, L, H, V, C, Q and Z with absolute coordinates. The middle of a drawing is (50, 45): the foot of
raw clay takes the lowest part of the icon.
"""

HANDSET = (
    "M22 46 C22 25 78 25 78 46 V51 Q78 55 74 55 H65.5 Q61.5 55 61.5 51 V47.5 Q61.5 44.5 58.5 43.5 "
    "C54 42 46 42 41.5 43.5 Q38.5 44.5 38.5 47.5 V51 Q38.5 55 34.5 55 H26 Q22 55 22 51 Z"
)

GLYPHS = {
    "com.apple.mobilephone": ["T -135", f"S {HANDSET}"],
    "com.apple.MobileSMS": [
        "S M50 24 C36 24 25.5 32.5 25.5 43.5 C25.5 49.5 29 54.8 34.5 58.5 C34.5 62.5 33 66 30 68.5 "
        "C37 68.5 42 65.8 45 62.6 C46.6 62.9 48.3 63 50 63 C64 63 74.5 54.5 74.5 43.5 C74.5 32.5 64 24 50 24 Z",
        "D 40 43.5 2.9", "D 50 43.5 2.9", "D 60 43.5 2.9",
    ],
    "com.apple.mobilesafari": ["C 50 45 24", "E 50 45 10 24", "S M26 45 H74"],
    "com.apple.mobilemail": ["R 25 28.5 50 34 6", "S M28 33.5 L46 47.5 Q50 50.5 54 47.5 L72 33.5"],
    "com.apple.Music": ["S M42 60 V31 L68 25.5 V54.5", "C 35.5 60 6.5", "C 61.5 54.5 6.5", "S M42 40.5 L68 35"],
    "com.apple.Preferences": [
        "S M34 23 V67 M50 23 V67 M66 23 V67", "D 34 54 6.2", "D 50 35 6.2", "D 66 49 6.2",
    ],
    "com.apple.camera": ["S M38.5 31 L42 24.5 H58 L61.5 31", "R 24.5 31 51 34 7", "C 50 48 9.5"],
    "com.apple.mobileslideshow": ["R 25 25 50 41 7", "S M27 59 L41 45 L52 56 L60 48.5 L73 59.5", "C 60.5 36.5 4"],
    "com.apple.mobiletimer": ["C 50 45 24", "S M50 31 V45 L59.5 51"],
    "com.apple.weather": [
        "S M36.5 66 H63 C73.5 66 74.5 53 64.5 51.5 C62.5 40.5 47.5 40 44 49.5 C31.5 48.5 28 66 36.5 66 Z",
        "A 61 35.5 9 180 48", "D 61 19.5 2.4", "D 72.3 24.2 2.4", "D 77 35.5 2.4", "D 49.7 24.2 2.4",
    ],
    "com.apple.Maps": [
        "S M50 69 C38 55.5 32 48.5 32 39.5 C32 29 40 21.5 50 21.5 C60 21.5 68 29 68 39.5 C68 48.5 62 55.5 50 69 Z",
        "C 50 39.5 6.8",
    ],
    "com.apple.mobilenotes": ["R 30 22 40 46 6", "S M39.5 34 H60.5 M39.5 45 H60.5 M39.5 56 H52"],
    "com.apple.reminders": ["C 50 45 24", "S M39 45.5 L47 53.5 L61.5 37"],
    "com.apple.news": ["R 26 24.5 48 41 6", "S M36 35.5 H64 M36 45.5 H46 M36 55.5 H46", "B 53.5 43.5 12 14 2.5"],
    "com.apple.Home": ["S M25.5 44 L50 23 L74.5 44", "S M33 39 V66 H67 V39", "S M45 66 V53.5 H55 V66"],
    "com.apple.stocks": ["S M26 60 L40.5 45.5 L51 54 L73.5 29.5", "S M59.5 29 H74 V43.5"],
    "com.apple.VoiceMemos": ["S M27.5 41 V49 M36.5 34 V56 M45.5 23.5 V66.5 M54.5 37 V53 M63.5 29.5 V60.5 M72.5 41 V49"],
    "com.apple.iBooks": [
        "S M50 32 C43 26.5 34 25 25.5 26 V60 C34 59 43 60.5 50 66 C57 60.5 66 59 74.5 60 V26 C66 25 57 26.5 50 32 Z",
        "S M50 32 V66",
    ],
    "com.apple.AppStore": ["S M32.5 35.5 H67.5 L70.5 67 H29.5 Z", "S M41 42.5 V32 C41 20 59 20 59 32 V42.5"],
    "com.apple.podcasts": ["R 42 20.5 16 28 8", "S M33.5 40 C33.5 62.5 66.5 62.5 66.5 40", "S M50 57 V69 M41 69 H59"],
    "com.apple.tv": ["R 24.5 25.5 51 33.5 6", "S M39.5 68 H60.5"],
    "com.apple.Health": [
        "S M50 66 C33.5 54.5 25.5 46 25.5 37 C25.5 29.5 31 24.5 38 24.5 C43 24.5 47.5 27 50 31.5 "
        "C52.5 27 57 24.5 62 24.5 C69 24.5 74.5 29.5 74.5 37 C74.5 46 66.5 54.5 50 66 Z",
    ],
    "com.apple.Passbook": ["R 25 27 50 37 7", "S M74.5 39.5 H62.5 C54 39.5 54 52 62.5 52 H74.5", "S M33 35.5 H46"],
    "com.apple.calculator": [
        "S M28 34 H45 M36.5 25.5 V42.5", "S M55 34 H72", "S M30.5 50 L42.5 62 M42.5 50 L30.5 62", "S M55 51.5 H72 M55 60.5 H72",
    ],
    "com.apple.MobileStore": [
        "S M50 21.5 L57.5 37 L74.5 39.3 L62 51.2 L65.2 68 L50 59.8 L34.8 68 L38 51.2 L25.5 39.3 L42.5 37 Z",
    ],
    "com.apple.DocumentsApp": [
        "S M26 61 V31 Q26 26 31 26 H41.5 L48 33 H69 Q74 33 74 38 V61 Q74 66 69 66 H31 Q26 66 26 61 Z", "S M37 45 H63",
    ],
    "com.apple.facetime": ["R 23.5 29.5 35 31 7", "S M65 41 L76 34.5 V55.5 L65 49 Z"],
    "com.apple.MobileAddressBook": ["C 50 34 10.5", "S M30 67.5 C30 46.5 70 46.5 70 67.5"],
    "com.apple.compass": ["C 50 45 24", "F M60 35 L53.5 49 L40 55 L46.5 41.5 Z"],
    "com.apple.measure": ["T -45", "R 21 34.5 58 21 4", "S M31 35 V42.5 M40.5 35 V46 M50 35 V42.5 M59.5 35 V46 M69 35 V42.5"],
    "com.apple.tips": [
        "S M41 56.5 C41 50.5 33 48.5 33 38 C33 28 40.5 21 50 21 C59.5 21 67 28 67 38 C67 48.5 59 50.5 59 56.5 Z",
        "S M43.5 63.5 H56.5 M47 70 H53",
    ],
    "com.apple.Bridge": [
        "R 34.5 29.5 31 31 9", "S M40.5 29.5 L42 20 H58 L59.5 29.5 M40.5 60.5 L42 70 H58 L59.5 60.5", "S M50 38.5 V46 L55 48.5",
    ],
    "com.google.ios.youtube": ["C 50 45 24", "F M45.5 36.5 L59 45 L45.5 53.5 Z"],
    "com.burbn.instagram": ["T -6", "R 28 21 44 49 5.5", "R 36.5 29.5 27 24 2.5", "S M45 61.5 H55"],
    "com.spotify.client": ["S M26.5 52 V45 C26.5 15.5 73.5 15.5 73.5 45 V52", "R 25.5 47.5 10.5 19 5", "R 64 47.5 10.5 19 5"],
    "com.google.Gmail": [
        "C 50 45 9.5",
        "S M59.5 35.5 V47.5 C59.5 57.5 74 56.5 74 45 C74 31.7 63.3 21 50 21 C36.7 21 26 31.7 26 45 C26 58.3 36.7 69 50 69 "
        "C55.5 69 60.5 67.2 64.5 64",
    ],
}

# Tiles of the settings app, by their keys there; in hundredths of the tile, the middle as above.
SETTINGS = {
    "AirplaneMode": [
        "T 90",
        "F M50 15 C53.5 15 55.5 20 55.5 25 V36.5 L78 51 V57 L55.5 51 V63.5 L63 69.5 V74 L50 70.5 L37 74 V69.5 L44.5 63.5 "
        "V51 L22 57 V51 L44.5 36.5 V25 C44.5 20 46.5 15 50 15 Z",
    ],
    "WiFi": ["A 50 67 15 -134 -46", "A 50 67 29 -134 -46", "A 50 67 43 -134 -46", "D 50 65.5 5"],
    "Bluetooth": ["S M35.5 32 L64 58 L50 71 V19 L64 32 L35.5 58"],
    "Notifications": [
        "S M50 21 C37.5 21 33.5 30.5 33.5 40 C33.5 51.5 28 54.5 25.5 60.5 H74.5 C72 54.5 66.5 51.5 66.5 40 "
        "C66.5 30.5 62.5 21 50 21 Z",
        "S M44 69.5 H56",
    ],
    "Sounds": ["S M24 37.5 H33 L47 25.5 V64.5 L33 52.5 H24 Z", "A 48 45 14 -40 40", "A 48 45 28 -42 42"],
    "DoNotDisturb": ["S M43 20.5 C24 26.5 15.5 48.5 27 64 C39.5 80 65 78 75.5 61.5 C55.5 65.5 37 46.5 43 20.5 Z"],
    "General": [
        "C 50 45 6.5",
        "S M45.7 26.5 L46.7 19.7 L53.3 19.7 L54.3 26.5 L60.1 28.9 L65.5 24.8 L70.2 29.5 L66.1 34.9 L68.5 40.7"
        " L75.3 41.7 L75.3 48.3 L68.5 49.3 L66.1 55.1 L70.2 60.5 L65.5 65.2 L60.1 61.1 L54.3 63.5 L53.3 70.3"
        " L46.7 70.3 L45.7 63.5 L39.9 61.1 L34.5 65.2 L29.8 60.5 L33.9 55.1 L31.5 49.3 L24.7 48.3 L24.7 41.7"
        " L31.5 40.7 L33.9 34.9 L29.8 29.5 L34.5 24.8 L39.9 28.9 Z",
    ],
    "Wallpaper": ["R 26 22 48 46 7", "D 40.5 36 4.6", "S M28 58 C36 46 43 63 52 54 C60 46 65 51 72 44"],
    "Battery": ["R 21.5 31 50 28 7", "B 29 38.5 25 13 2.5", "S M78.5 41.5 V48.5"],
}

# Signs of the interface; their middle is (50, 50).
SIGNS = {
    "chevron.right": ["S M37 15 L72 50 L37 85"],
    "plus": ["S M50 15 V85 M15 50 H85"],
    "checkmark": ["S M15 54 L38 77 L85 21"],
    "magnifyingglass": ["C 42 42 27.5", "S M63 63 L86 86"],
    "square.and.arrow.up": ["S M29 44 H19 V89 H81 V44 H71", "S M50 64 V13 M34 28 L50 12 L66 28"],
    "gear": [
        "C 50 50 11",
        "S M43.5 21.7 L44.9 11.3 L55.1 11.3 L56.5 21.7 L65.4 25.4 L73.7 19.1 L80.9 26.3 L74.6 34.6 L78.3 43.5"
        " L88.7 44.9 L88.7 55.1 L78.3 56.5 L74.6 65.4 L80.9 73.7 L73.7 80.9 L65.4 74.6 L56.5 78.3 L55.1 88.7"
        " L44.9 88.7 L43.5 78.3 L34.6 74.6 L26.3 80.9 L19.1 73.7 L25.4 65.4 L21.7 56.5 L11.3 55.1 L11.3 44.9"
        " L21.7 43.5 L25.4 34.6 L19.1 26.3 L26.3 19.1 L34.6 25.4 Z",
    ],
    "heart.fill": [
        "F M50 86 C26 69 11 56 11 39 C11 26 20 17 31.5 17 C39.5 17 46.5 21.5 50 29 C53.5 21.5 60.5 17 68.5 17 "
        "C80 17 89 26 89 39 C89 56 74 69 50 86 Z",
    ],
    "star.fill": ["F M50 11 L61.5 36 L89 39.2 L68.8 58 L74.2 85 L50 71.6 L25.8 85 L31.2 58 L11 39.2 L38.5 36 Z"],
}

# Images of the toolkit: width, height, width of lines, and the marks; all in points.
TOOLKIT = {
    "UINavigationBarBackIndicatorDefault": (13, 21, 3, ["S M11 2 L2.5 10.5 L11 19"]),
    "UITableNext": (8, 13, 2.3, ["S M1.6 1.6 L6.4 6.5 L1.6 11.4"]),
    "UIButtonBarSearch": (22, 22, 2.3, ["C 9.2 9.2 6.2", "S M14 14 L19 19"]),
}
