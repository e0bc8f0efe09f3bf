#!/usr/bin/env python3
"""Writes the benchmark's mailboxes as Dovecot maildirs, and its Rules file.

    mailboxes.py MAILROOT RULESFILE

MAILROOT/<user>/Maildir is made for each mailbox below, laid out as our
Dovecot test fixture lays out its own: a fixed dovecot-uidlist header and
message files named by a rising time stamp, so every run sees the same UIDLs.
MAILROOT/manifest.json tells the caller what was made. Everything comes from
fixed seeds, so two runs write the same bytes.
"""

import base64
import datetime
import hashlib
import json
import os
import quopri
import random
import sys

UID_VALIDITY = 1700000000
OWNER = ("Dana Whitfield", "dana.whitfield@example.org")

# user, messages, kind, seed, messages of about 1 MB
MAILBOXES = [
    ("mixed200", 200, "mixed", 200, 3),
    ("mixed2000", 2000, "mixed", 2000, 8),
    ("rules2000", 2000, "plain20k", 20000, 0),
]

# One message in this many of the rules mailbox is the spam the last rule
# catches; nothing else in the mailboxes fits any rule.
SPAM_EVERY = 50
SPAM_SUBJECT = "Exclusive casino bonus waiting for you"
SPAM_FROM = ("Lucky Draw Team", "promo@casino-royal.example")

WORDS = """
the of and to in is that for it as with was on be at by this have from or
an are but not which all were when we there can more if will one about
would their what so up out them into has time than only other some could
these two may then do first any like now my over such our even most made
after also did many before must through back years where much your way
well down should because each just those people how too little state good
very make world still own see men work long get here between both life
being under never day same another know while last might us great old year
off come since against go came right used take three meeting report budget
quarter project review draft schedule team office client contract invoice
payment delivery order shipment update notes agenda minutes proposal plan
design release version build test server network backup storage account
customer support ticket issue request feedback survey training workshop
conference travel flight hotel booking weekend holiday family dinner lunch
coffee garden weather photos birthday party concert football match school
homework library museum recipe kitchen bicycle station train harbour coast
mountain river forest village city market bakery cheese apples tomatoes
please thanks regards attached below above following soon tomorrow today
yesterday morning afternoon evening monday tuesday wednesday thursday
friday saturday sunday january february march april june july august
september october november december figures numbers estimate forecast
revenue costs margin growth target deadline milestone phase scope risk
approval signature printer laptop screen keyboard cable charger password
reminder confirm cancel reschedule available calendar room floor building
""".split()

ACCENTED = ["café", "naïve", "résumé", "Grüße", "Zürich", "façade",
            "São Paulo", "Malmö", "Straße", "crème brûlée", "€ 120",
            "déjà vu", "piñata", "Ærø", "smørrebrød", "Kraków"]

PEOPLE = [
    ("Alice Moreau", "alice.moreau@example.com"),
    ("Bob Lindqvist", "bob.lindqvist@example.net"),
    ("José Müller", "jose.mueller@example.de"),
    ("Zoë Fairchild", "zoe@fairchild.example"),
    ("Łukasz Nowak", "lukasz.nowak@example.pl"),
    ("Søren Kierkegaard", "soren.k@example.dk"),
    ("François Dupont", "f.dupont@example.fr"),
    ("山田 太郎", "taro.yamada@example.jp"),
    ("Ольга Петрова", "olga.petrova@example.ru"),
    ("Priya Raman", "priya.raman@example.in"),
    ("Tom Baker", "tom@bakers.example"),
    ("Helpdesk", "helpdesk@it.example.org"),
    ("Accounts Payable", "ap@finance.example.com"),
    ("Weekly Digest", "digest@news.example.net"),
    ("Grace Okafor", "grace.okafor@example.ng"),
    ("Mateo García", "mateo.garcia@example.es"),
]

SUBJECTS = [
    "Re: Budget review for {month}",
    "Meeting notes – {word} project",
    "Invoice #{num} from {month}",
    "Fwd: Photos from the {word} trip",
    "Grüße aus München",
    "Réunion de l'équipe – ordre du jour",
    "Kvartalsrapport för Q{q}",
    "Ångström measurements, run {num}",
    "Привет из Москвы",
    "東京オフィスの件について",
    "Your order {num} has shipped",
    "Re: Re: {word} schedule for {month}",
    "Weekly digest: {word}, {word2} and more",
    "Reminder: {word} on {day}",
    "Café on {day}? ☕",
    "Draft proposal v{q} – comments welcome",
    "Ticket {num}: {word} {word2} not working",
    "Lunch {day}",
]

MONTHS = ["January", "February", "March", "April", "May", "June", "July"]
DAYS = ["Monday", "Tuesday", "Wednesday", "Thursday", "Friday"]
ZONES = [0, 60, 120, -300, -480, 330, 540]

ATTACHMENTS = [
    ("application/pdf", "report-Q{q}.pdf", b"%PDF-1.7\n"),
    ("image/jpeg", "IMG_{num}.jpg", b"\xff\xd8\xff\xe0\x00\x10JFIF\x00"),
    ("application/vnd.openxmlformats-officedocument.wordprocessingml.document",
     "proposal-v{q}.docx", b"PK\x03\x04"),
    ("application/pdf", "Präsentation {num}.pdf", b"%PDF-1.5\n"),
    ("image/png", "screenshot-{num}.png", b"\x89PNG\r\n\x1a\n"),
    ("text/csv", "figures-{month}.csv", b"date,amount\n"),
]

# The 20 rules of 10 entries: spam and clean-up filters as a user writes
# them. On the rules mailbox no rule fits an ordinary message, so every rule
# is read for every message; the planted spam fits the last rule alone.
RULES = [
    ("Pharmacy", 2, "OR", [
        "Subject Contains viagra", "Subject Contains cialis",
        "Body Contains online pharmacy", "Subject Contains cheap ?eds",
        "From Contains pharma", "Body Contains no prescription needed",
        "Subject Contains weight loss", "Body Contains miracle pill",
        "From Contains *@rx-deals.example", "Subject Equals Your prescription is ready"]),
    ("Lottery", 1, "OR", [
        "Subject Contains lottery", "Subject Contains you have won",
        "Body Contains claim your prize", "From Contains lotto",
        "Body Contains winning ticket", "Subject Contains jackpot",
        "Body Contains processing fee", "Subject Contains win*prize",
        "From Equals claims@lotto-intl.example", "Size Equals 31999"]),
    ("Advance fee", 1, "OR", [
        "Body Contains next of kin", "Body Contains inheritance",
        "Subject Contains urgent business proposal", "Body Contains barrister",
        "From Contains prince", "Body Contains transfer the sum of",
        "Subject Contains confidential deal", "Body Contains million dollars",
        "Body Contains Western Union", "To Contains NOT dana.whitfield"]),
    ("Crypto", 2, "OR", [
        "Subject Contains bitcoin", "Subject Contains crypto",
        "Body Contains wallet address", "Body Contains guaranteed returns",
        "From Contains coin", "Subject Contains double your",
        "Body Contains blockchain opportunity", "Subject Contains ICO",
        "Body Contains seed phrase", "From Contains *@fastprofit.example"]),
    ("Phishing", 1, "OR", [
        "Subject Contains verify your account", "Subject Contains account suspended",
        "Body Contains confirm your identity", "Body Contains login attempt",
        "From Contains security-alert", "Subject Contains unusual sign-in",
        "Body Contains click here immediately", "From Contains paypa1",
        "Subject Contains password expires", "Body Contains update your billing"]),
    ("Old newsletters", 1, "AND", [
        "From Contains newsletter", "Subject Contains issue",
        "Body Contains unsubscribe", "Body Contains NOT invoice",
        "Size GreaterThan 40", "To Contains dana",
        "Subject Contains NOT Re:", "From Contains NOT example.org",
        "Body Contains view this email in your browser", "Size LessThan 500"]),
    ("Adult", 2, "OR", [
        "Subject Contains xxx", "Subject Contains hot singles",
        "Body Contains adult content", "From Contains dating",
        "Subject Contains lonely", "Body Contains webcam",
        "Subject Contains 18+", "From Contains *@flirt.example",
        "Body Contains meet local", "Subject Equals Are you alone tonight?"]),
    ("Loans", 2, "OR", [
        "Subject Contains loan approved", "Subject Contains credit score",
        "Body Contains low interest", "Body Contains debt consolidation",
        "From Contains lender", "Subject Contains pre-approved",
        "Body Contains no credit check", "Subject Contains refinance",
        "From Contains *@quickcash.example", "Body Contains apply now and get"]),
    ("Big bulk mail", 1, "AND", [
        "Size GreaterThan 20000", "From Contains bulk",
        "Subject Contains offer", "Body Contains limited time",
        "Body Contains NOT regards", "To Contains undisclosed",
        "Subject Contains NOT invoice", "From Contains NOT example.com",
        "Body Contains special discount", "Size LessThan 30000"]),
    ("Replica goods", 2, "OR", [
        "Subject Contains replica", "Subject Contains rolex",
        "Body Contains designer handbags", "Body Contains luxury watches",
        "From Contains outlet", "Subject Contains 90% off",
        "Body Contains authentic quality", "Subject Contains sunglasses sale",
        "From Contains *@brand-outlet.example", "Body Contains free shipping worldwide"]),
    ("Marketing", 2, "OR", [
        "Subject Contains act now", "Subject Contains limited offer",
        "Body Contains this is not spam", "Body Contains you are receiving this because",
        "From Contains marketing", "Subject Contains last chance",
        "Subject Contains free*offer", "Body Contains opt out",
        "From Contains promo-", "Subject Equals Special offer inside"]),
    ("Work from home", 2, "OR", [
        "Subject Contains work from home", "Subject Contains earn $",
        "Body Contains be your own boss", "Body Contains per week from home",
        "From Contains jobs-now", "Subject Contains easy money",
        "Body Contains no experience required", "Subject Contains hiring immediately",
        "From Contains *@remote-riches.example", "Body Contains mystery shopper"]),
    ("Old receipts", 1, "AND", [
        "From Contains receipts", "Subject Contains receipt",
        "Body Contains order total", "Body Contains NOT dispute",
        "Size LessThan 50", "To Contains dana.whitfield",
        "Subject Contains NOT urgent", "From Contains NOT example.org",
        "Body Contains thank you for shopping", "Size GreaterThan 2"]),
    ("Fake shipping", 1, "OR", [
        "Subject Contains parcel on hold", "Subject Contains delivery failed",
        "Body Contains customs fee", "Body Contains reschedule your parcel",
        "From Contains dhl-", "Subject Contains package notice",
        "Body Contains tracking suspended", "From Contains courier-notice",
        "Subject Contains your parcel", "Body Contains pay the outstanding"]),
    ("Tech support scam", 1, "OR", [
        "Subject Contains virus detected", "Subject Contains computer infected",
        "Body Contains call this number", "Body Contains tech support line",
        "From Contains microsoft-support", "Subject Contains license expired",
        "Body Contains remote access", "Subject Contains renew your antivirus",
        "From Contains *@pc-fixers.example", "Body Contains gift card"]),
    ("Surveys", 2, "OR", [
        "Subject Contains survey reward", "Subject Contains claim your gift",
        "Body Contains complete our short survey", "Body Contains reward points",
        "From Contains rewards", "Subject Contains you were selected",
        "Body Contains exclusive reward", "Subject Contains congratulations!",
        "From Contains *@survey-prize.example", "Subject Equals Your opinion matters"]),
    ("Casino mailing list", 1, "AND", [
        "From Contains casino-list", "Subject Contains weekly",
        "Body Contains terms apply", "Body Contains NOT invoice",
        "Size GreaterThan 1", "To Contains dana",
        "Subject Contains NOT Re:", "From Contains NOT example",
        "Body Contains free spins", "Size LessThan 100"]),
    ("SEO offers", 2, "OR", [
        "Subject Contains SEO", "Subject Contains first page of google",
        "Body Contains increase your ranking", "Body Contains backlinks",
        "From Contains seo-", "Subject Contains website traffic",
        "Body Contains we noticed your website", "Subject Contains web design offer",
        "From Contains *@rank-boost.example", "Body Contains monthly package"]),
    ("Foreign spam", 2, "OR", [
        "Subject Contains 免费", "Subject Contains заработок",
        "Body Contains 代开发票", "Body Contains скидка",
        "From Contains .xyz", "Subject Contains ganhe dinheiro",
        "Body Contains oferta exclusiva", "Subject Contains gratis",
        "From Contains *@promo.click", "Body Contains kostenlos testen"]),
    ("Casino", 2, "OR", [
        "Subject Contains casino bonus", "Subject Contains free spins",
        "Body Contains deposit match", "Body Contains online casino",
        "From Contains casino-royal", "Subject Contains roulette",
        "Body Contains wager requirements", "Subject Contains blackjack",
        "From Contains *@betting.example", "Body Contains play now"]),
]

PLANTED_RULE = 20


class Writer:
    """One message at a time, with CRLF line ends and a rising date."""

    def __init__(self, seed):
        self.rng = random.Random(seed)
        self.when = datetime.datetime(2024, 1, 8, 8, 30, tzinfo=datetime.timezone.utc)
        self.serial = 0

    # -- text --------------------------------------------------------------

    def sentence(self, accents=False):
        words = self.rng.choices(WORDS, k=self.rng.randint(6, 16))
        if accents and self.rng.random() < 0.5:
            words.insert(self.rng.randrange(len(words)), self.rng.choice(ACCENTED))
        text = " ".join(words)
        return text[0].upper() + text[1:] + self.rng.choice([".", ".", ".", "?", "!"])

    def paragraphs(self, size, accents=False):
        """Paragraphs of about `size` characters, wrapped at 72 columns."""
        out, total = [], 0
        while total < size:
            para = " ".join(self.sentence(accents) for _ in range(self.rng.randint(2, 6)))
            out.append(wrap(para))
            total += len(para) + 2
        return "\n\n".join(out)

    def fill(self, text):
        return text.format(
            month=self.rng.choice(MONTHS), day=self.rng.choice(DAYS),
            word=self.rng.choice(WORDS), word2=self.rng.choice(WORDS),
            num=self.rng.randint(1000, 99999), q=self.rng.randint(1, 4))

    # -- headers -----------------------------------------------------------

    def headers(self, sender, subject, extra=()):
        self.serial += 1
        self.when += datetime.timedelta(minutes=self.rng.randint(3, 400))
        zone = datetime.timezone(datetime.timedelta(minutes=self.rng.choice(ZONES)))
        date = self.when.astimezone(zone).strftime("%a, %d %b %Y %H:%M:%S %z")
        domain = sender[1].split("@")[1]
        relay = f"mx{self.rng.randint(1, 9)}.{domain}"
        to = [address(*OWNER)]
        if self.rng.random() < 0.2:
            to.append(address(*self.rng.choice(PEOPLE)))
        lines = [
            f"Return-Path: <{sender[1]}>",
            f"Received: from {relay} ({relay} [192.0.2.{self.rng.randint(1, 254)}])",
            f"\tby mx.example.org with ESMTPS id {self.rng.getrandbits(40):010X}",
            f"\tfor <{OWNER[1]}>; {date}",
            f"Date: {date}",
            f"From: {address(*sender)}",
            "To: " + ",\n ".join(to),
            "Subject: " + encode_header(subject),
            f"Message-ID: <{self.rng.getrandbits(64):016x}.{self.serial}@{domain}>",
            "MIME-Version: 1.0",
        ]
        return lines + list(extra)

    # -- parts -------------------------------------------------------------

    def text_part(self, size, html=False, accents=None):
        """A text/plain or text/html part: 7bit, or quoted-printable UTF-8
        when it has accented words or is HTML."""
        if accents is None:
            accents = self.rng.random() < 0.3
        text = self.paragraphs(size, accents)
        subtype = "plain"
        if html:
            subtype = "html"
            body = "".join(f"<p>{p.replace(chr(10), ' ')}</p>" for p in text.split("\n\n"))
            text = ("<html><head><meta charset=\"utf-8\"></head>"
                    f"<body style=\"font-family: sans-serif\">{body}</body></html>")
        raw = text.encode("utf-8")
        if accents or html:
            encoding, data = "quoted-printable", quopri.encodestring(raw).decode("ascii")
        else:
            encoding, data = "7bit", text
        charset = "utf-8" if accents else "us-ascii"
        head = [f"Content-Type: text/{subtype}; charset={charset}",
                f"Content-Transfer-Encoding: {encoding}"]
        return head, data

    def attachment(self, size):
        kind, name, magic = self.rng.choice(ATTACHMENTS)
        name = self.fill(name)
        data = magic + self.rng.randbytes(max(0, size - len(magic)))
        quoted = encode_header(name)
        head = [f"Content-Type: {kind}; name=\"{quoted}\"",
                "Content-Transfer-Encoding: base64",
                f"Content-Disposition: attachment;\n filename=\"{quoted}\""]
        return head, base64.encodebytes(data).decode("ascii").rstrip("\n")

    def boundary(self):
        return f"----=_Part_{self.serial}_{self.rng.getrandbits(48):012x}"

    def multipart(self, subtype, parts):
        mark = self.boundary()
        out = []
        for head, data in parts:
            out += [f"--{mark}"] + head + ["", data]
        out.append(f"--{mark}--")
        head = [f"Content-Type: multipart/{subtype};\n boundary=\"{mark}\""]
        return head, "\n".join(out)

    def alternative(self, size):
        return self.multipart("alternative", [self.text_part(size),
                                             self.text_part(size, html=True)])

    # -- whole messages ----------------------------------------------------

    def mixed_message(self, big=False):
        sender = self.rng.choice(PEOPLE)
        subject = self.fill(self.rng.choice(SUBJECTS))
        roll = self.rng.random()
        size = int(self.rng.lognormvariate(7.6, 0.8))  # text of ~2 KB, some far more
        if big:
            body = self.multipart("mixed", [self.text_part(size),
                                            self.attachment(self.rng.randint(740_000, 770_000))])
        elif roll < 0.35:
            body = self.text_part(size)
        elif roll < 0.50:
            body = self.text_part(size, accents=True)
        elif roll < 0.80:
            body = self.alternative(size)
        else:
            first = self.alternative(size) if self.rng.random() < 0.5 else self.text_part(size)
            files = [self.attachment(min(600_000, max(2_000, int(self.rng.lognormvariate(10.4, 1.0)))))
                     for _ in range(self.rng.choice([1, 1, 1, 2, 3]))]
            body = self.multipart("mixed", [first] + files)
        return self.message(sender, subject, body)

    def plain20k_message(self, spam=False):
        if spam:
            sender, subject = SPAM_FROM, SPAM_SUBJECT
        else:
            sender = self.rng.choice(PEOPLE)
            subject = self.fill(self.rng.choice(SUBJECTS))
        return self.message(sender, subject, self.text_part(self.rng.randint(19_000, 21_000)))

    def message(self, sender, subject, body):
        head, data = body
        lines = self.headers(sender, subject) + head + [""] + [data]
        text = "\n".join(lines)
        if not text.endswith("\n"):
            text += "\n"
        return text.replace("\r\n", "\n").replace("\n", "\r\n").encode("utf-8")


def wrap(text, width=72):
    lines, line = [], ""
    for word in text.split(" "):
        if line and len(line) + 1 + len(word) > width:
            lines.append(line)
            line = word
        else:
            line = f"{line} {word}" if line else word
    lines.append(line)
    return "\n".join(lines)


def encode_header(text):
    """RFC 2047 encoded words for non-ASCII text, folded; ASCII stays as is."""
    if text.isascii():
        return text
    latin = all(ord(c) < 0x250 for c in text)
    words, chunk = [], ""
    for c in text:
        if len(encode_word(chunk + c, latin)) > 75:
            words.append(encode_word(chunk, latin))
            chunk = ""
        chunk += c
    words.append(encode_word(chunk, latin))
    return "\n ".join(words)


def encode_word(text, latin):
    data = text.encode("utf-8")
    if not latin:
        return "=?UTF-8?B?" + base64.b64encode(data).decode("ascii") + "?="
    safe = b"abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789!*+-/"
    out = "".join("_" if b == 0x20 else chr(b) if b in safe else f"={b:02X}" for b in data)
    return "=?UTF-8?Q?" + out + "?="


def address(name, mail):
    if name.isascii():
        return f"\"{name}\" <{mail}>" if any(c in name for c in ",.") else f"{name} <{mail}>"
    return f"{encode_header(name)} <{mail}>"


def write_maildir(root, user, messages):
    dir = os.path.join(root, user, "Maildir")
    for sub in ("cur", "new", "tmp"):
        os.makedirs(os.path.join(dir, sub), exist_ok=True)
    guid = hashlib.md5(user.encode()).hexdigest()
    with open(os.path.join(dir, "dovecot-uidlist"), "w") as f:
        f.write(f"3 V{UID_VALIDITY} N1 G{guid}\n")
    total = 0
    for i, data in enumerate(messages, start=1):
        with open(os.path.join(dir, "cur", f"{UID_VALIDITY + i}.velmora:2,"), "wb") as f:
            f.write(data)
        total += len(data)
    return total


def write_rules(path):
    lines = ["[Rules]", f"RuleCount={len(RULES)}", "Show=0", "ShowNew=0", "Time=30"]
    for n, (name, action, conjunction, entries) in enumerate(RULES, start=1):
        lines += ["", f"[Rule{n}]", f"Name={name}", "Enabled=1",
                  "Account=All Accounts", f"Action={action}", f"DescCount={len(entries)}"]
        for m, entry in enumerate(entries, start=1):
            prefix = f"{conjunction} " if m > 1 else ""
            lines.append(f"Description{m}={prefix}{entry} ")
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "w", encoding="utf-8", newline="\r\n") as f:
        f.write("\n".join(lines) + "\n")


def main():
    if len(sys.argv) != 3:
        sys.exit("usage: mailboxes.py MAILROOT RULESFILE")
    root, rules = sys.argv[1], sys.argv[2]
    manifest = {}
    for user, count, kind, seed, big in MAILBOXES:
        writer = Writer(seed)
        bigs = set(random.Random(seed + 1).sample(range(count), big))
        if kind == "mixed":
            messages = [writer.mixed_message(big=i in bigs) for i in range(count)]
            spam = 0
        else:
            messages = [writer.plain20k_message(spam=i % SPAM_EVERY == SPAM_EVERY - 1)
                        for i in range(count)]
            spam = count // SPAM_EVERY
        manifest[user] = {"messages": count, "bytes": write_maildir(root, user, messages),
                          "largest": max(len(m) for m in messages), "spam": spam}
    write_rules(rules)
    manifest["rules"] = {"count": len(RULES), "entries": sum(len(r[3]) for r in RULES),
                         "planted_rule": PLANTED_RULE}
    with open(os.path.join(root, "manifest.json"), "w") as f:
        json.dump(manifest, f, indent=1)


if __name__ == "__main__":
    main()
