"""What is typed under each layout."""

ASCII = "".join(map(chr, range(0x20, 0x7F)))
# What each layout is to type: a sentence, and all that its keys have, with dead keys where it has such.
LAYOUTS = {
    "us": ["The quick brown fox jumps over the lazy dog.\n\tTwice!\n", ASCII],
    "de": ["Zwölf Boxkämpfer jagen Viktor quer über den großen Sylter Deich.\n", ASCII + "ÄÖÜäöüß€§°µ²³áàâéèêÁÀÂÉÈÊ"],
    "fr": ["Portez ce vieux whisky au juge blond qui fume. Où est l'été ?\n", "abcxyzAQWZMç&é\"'(-è_à)=1234567890âêîôûäëïöüÂÊù%$*€"],
    "us:dvorak": ["Ctrl and Copy are where c is now.\n", ASCII],
    "ru": ["Съешь же ещё этих мягких французских булок, да выпей чаю.\n", "ЁёАБВГДЕЖЗИЙКЛМНОПРСТУФХЦЧШЩЪЫЬЭЮЯя!\"№;%:?*()_+1234567890-=/."],
}
