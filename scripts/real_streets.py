"""Real municipalities and streets, and how people write them: what scripts/suggestion-quality and scripts/validation-quality share.

None of the names serves to build the word lists.
"""
import collections
import csv
import hashlib
import pathlib
import re
import subprocess
import unicodedata

SEED = 20261122
MADRID = "28079"


def letters(text):
    plain = unicodedata.normalize("NFD", text.upper().replace("Ñ", "\0")).encode("ascii", "ignore").decode()
    return re.sub(r"[^A-Z0-9Ñ]", "", plain.replace("\0", "Ñ"))


def plain(text):
    """Capitals without accents, Ñ kept: as the cadastre writes."""
    kept = text.upper().replace("Ñ", "\0").replace("Ç", "\1")
    kept = unicodedata.normalize("NFD", kept)
    kept = "".join(c for c in kept if not unicodedata.combining(c))
    return kept.replace("\0", "Ñ").replace("\1", "Ç")


SMALL = set("EL LA LOS LAS LO DE DEL AL A Y E EN I LES ELS DELS DO DA DOS DAS OS AS O D L SA ES SES".split())
TYPES = {"Calle": "CL", "Avenida": "AV", "Plaza": "PZ", "Paseo": "PS", "Camino": "CM", "Travesía": "TR", "Carretera": "CR",
         "Callejón": "CJ", "Calleja": "CJ", "Ronda": "RD", "Urbanización": "UR", "Barrio": "BO", "Cuesta": "CT", "Bajada": "BJ",
         "Parque": "PQ", "Pasaje": "PJ", "Senda": "SD", "Subida": "SU", "Glorieta": "GL", "Paraje": "LG"}
WRITTEN = {"CL": ["Calle", "C/", "c.", "calle", "Carrer", "CL"], "AV": ["Avda.", "Avenida", "Av.", "avda", "Avinguda"],
           "PZ": ["Plaza", "Pza.", "Plza.", "plaza", "Plaça"], "PS": ["Paseo", "Pº", "Pso.", "Passeig"], "CM": ["Camino", "Cno.", "Camí"],
           "TR": ["Travesía", "Trv.", "travesia"], "CR": ["Carretera", "Ctra.", "ctra"], "RD": ["Ronda", "Rda."], "UR": ["Urbanización", "Urb."],
           "GL": ["Glorieta", "Gta."], "PJ": ["Pasaje", "Pje."], "CJ": ["Callejón", "Calleja"], "BO": ["Barrio", "Bº"], "PQ": ["Parque"],
           "CT": ["Cuesta"], "SD": ["Senda"]}
SHORT = {"SANTA": ["Sta.", "Sta"], "SANTO": ["Sto."], "SAN": ["S.", "Sn."], "DOCTOR": ["Dr.", "Dr"], "GENERAL": ["Gral.", "Gral"], "NUESTRA": ["Ntra."],
         "SEÑORA": ["Sra."], "FRANCISCO": ["Fco."], "MARIA": ["Mª", "M.ª"], "HERMANOS": ["Hnos."], "CAPITAN": ["Cap.", "Cptan."], "CORONEL": ["Cnel."], "MARQUES": ["Marq."],
         "PROFESOR": ["Prof."], "MAESTRO": ["Mtro."], "TENIENTE": ["Tte."], "COMANDANTE": ["Cte."], "VIRGEN": ["Virg."], "OBISPO": ["Obpo."], "PADRE": ["P."],
         "DON": ["D."], "FERNANDEZ": ["Fdez."], "RODRIGUEZ": ["Rguez."], "GONZALEZ": ["Glez."], "MARTINEZ": ["Mtnez."], "SANCHEZ": ["Schez."],
         "CONSTITUCION": ["Const."], "DOS": ["2"], "TRES": ["3"], "SIETE": ["7"], "PRIMERO": ["1º"], "XII": ["12"], "XIII": ["13"], "II": ["2"]}
ACCENTS = dict(zip("AEIOU", "ÁÉÍÓÚ"))


def held_out(code, street):
    text = street if code == MADRID else code
    return hashlib.sha256(text.encode()).digest()[0] % 2 == 1


class Data:
    def __init__(self, folder):
        self.folder = pathlib.Path(folder)
        self.codes = collections.defaultdict(list)
        self.names = {}
        for row in self.rows("codigos_postales.csv"):
            self.codes[row["cod_ine"]].append(row["codpostal"])
            self.names[row["cod_ine"]] = row["nombre"]
        self.provinces = {row["cod_prov"]: row["nombre_ine"] for row in self.rows("provincias.csv")}
        self.streets = []  # (municipality, type, name, postal code)
        seen = set()
        def add(code, kind, name, postal=""):
            name = re.sub(r"\s+", " ", name).strip()[:45].strip()
            key = (code, kind, name)
            if name and kind and key not in seen and code in self.codes:
                seen.add(key)
                codes = sorted(self.codes[code])
                self.streets.append((code, kind, name, postal or codes[len(seen) % len(codes)]))
        for row in self.rows("catastro/vias_catastro.csv"):
            add(row["cod_ine"], row["tv"][:3], row["nv"])
        for row in self.rows("callejero/tramos_rioja.csv"):
            add(row["cod_ine"], TYPES.get(row["tipo"], "CL"), row["nombre"].upper(), row["codpostal"])

    def rows(self, name):
        with open(self.folder / name, newline="", encoding="utf-8") as file:
            yield from csv.DictReader(file)

    def whole_streets(self):
        """A row of POSTAL for each street, as if all its numbers had one code."""
        return [(code, kind, name, 1, 9999, 2, 9998, postal) for code, kind, name, postal in self.streets]

    def load(self, ambcp, target, stretches=None):
        """Makes the tables; `stretches`: (municipality, type, name, odd first, odd last, even first, even last, postal code)."""
        subprocess.run([ambcp, "crear", target], check=True, stdout=subprocess.DEVNULL)
        def table(name, columns, rows):
            path = pathlib.Path(target) / (name + ".csv")
            with open(path, "w", newline="", encoding="utf-8") as file:
                writer = csv.writer(file)
                writer.writerow(columns)
                writer.writerows(rows)
            subprocess.run([ambcp, "cargar", target, name, path], check=True, stdout=subprocess.DEVNULL)
        table("MUNICIPI", ["COD_INE", "CODPOSTAL", "NOMBRE", "COD_PROV", "UNICO", "ENT_MENOR"],
              [(code, postal, self.names[code].upper()[:53], code[:2], "N", "False") for code in sorted(self.codes) for postal in sorted(set(self.codes[code]))])
        table("PROVIN", ["PROVINCIA", "CODIGO", "GRUPO"], [(name[:21].upper(), "0" + code, 1) for code, name in self.provinces.items()])
        table("TIPO_VIA", ["CODIGO", "NOMBRE", "NOMBRE_CAT"],
              [(row["codigo"], row["nombre"].upper()[:15], row["nombre_cat"].upper()[:15]) for row in self.rows("tipos_via_catastro.csv")])
        table("POSTAL", ["CODIGO1", "PROVINCIA", "CAPITAL", "TIPO_VIA", "VIA", "IMPAR_INI", "IMPAR_FIN", "PAR_INI", "PAR_FIN", "CODPOSTAL", "COD_INE"],
              [(f"{10000000 + i}", code[:2], "9", kind, name, *numbers, postal, code)
               for i, (code, kind, name, *numbers, postal) in enumerate(stretches or self.whole_streets())])


def slip(rng, name):
    """One letter wrong, missing, added, or exchanged with its neighbour; never a blank, a digit or the first letter of a short word."""
    places = [i for i, c in enumerate(name) if c.isalpha()]
    while True:
        i = rng.choice(places)
        kind = rng.randrange(4)
        letter = rng.choice("ABCDEFGILMNOPRSTUV")
        if kind == 0 and name[i] != letter:
            return name[:i] + letter + name[i + 1:]
        if kind == 1:
            return name[:i] + name[i + 1:]
        if kind == 2:
            return name[:i] + letter + name[i:]
        if kind == 3 and i + 1 < len(name) and name[i + 1].isalpha() and name[i] != name[i + 1]:
            return name[:i] + name[i + 1] + name[i] + name[i + 2:]


def accented(rng, name):
    vowels = [i for i, c in enumerate(name) if c in ACCENTS]
    if not vowels:
        return name
    i = rng.choice(vowels)
    return name[:i] + ACCENTS[name[i]] + name[i + 1:]


def with_article(rng, name):
    words = name.split()
    kept = [w for w in words if w not in SMALL]
    choice = rng.randrange(3)
    if choice == 0 and kept and len(kept) < len(words):
        return " ".join(kept)
    if choice == 1:
        return name + ", " + rng.choice(["LA", "EL", "LOS"])
    return rng.choice(["LA ", "DE LA ", "EL ", "DEL ", "LOS "]) + name


def shortened(rng, name):
    words = name.split()
    places = [i for i, w in enumerate(words) if plain(w) in SHORT]
    if not places:
        return None
    for i in places:
        words[i] = rng.choice(SHORT[plain(words[i])])
    return " ".join(words)
