<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="sk">
<context>
    <name>DailyAttenReport</name>
    <message>
        <source>Denný report doch. %1</source>
        <translation>Daily attendance %1</translation>
    </message>
    <message>
        <source>Denný report dochádzky za %1</source>
        <translation>Daily attendance report of %1</translation>
    </message>
    <message>
        <source>Denný report dochádzky sa nachádza v prílohe.


Tento e-mail bol vygenerovaný automaticky dochádzkovým systémom ZAS (modul AutoReport).</source>
        <translation>The daily attendance report is attached.


This mail was generated automatically by the attendance system ZAS (module AutoReport).</translation>
    </message>
    <message>
        <source>OSCISLO</source>
        <translation>NUMBER</translation>
    </message>
    <message>
        <source>MENO</source>
        <translation>NAME</translation>
    </message>
    <message>
        <source>SKUPINA</source>
        <translation>GROUP</translation>
    </message>
    <message>
        <source>ZMENA</source>
        <translation>SHIFT</translation>
    </message>
    <message>
        <source>ZARADENIE</source>
        <translation>DEPARTMENT</translation>
    </message>
    <message>
        <source>STREDISKO</source>
        <translation>CENTRE</translation>
    </message>
    <message>
        <source>DEN</source>
        <translation>DAY</translation>
    </message>
    <message>
        <source>ODPRACOVANY CAS</source>
        <translation>TIME WORKED</translation>
    </message>
    <message>
        <source>NEODPRACOVANY CAS</source>
        <translation>TIME NOT WORKED</translation>
    </message>
    <message>
        <source>NADCAS</source>
        <translation>OVERTIME</translation>
    </message>
    <message>
        <source>NEUZNANY CAS</source>
        <translation>TIME NOT RECOGNISED</translation>
    </message>
    <message>
        <source>ZAOKRUHLENIE</source>
        <translation>ROUNDING</translation>
    </message>
    <message>
        <source>POSUN</source>
        <translation>MOVED TIME</translation>
    </message>
    <message>
        <source>PENALIZACIA</source>
        <translation>PENALTY</translation>
    </message>
    <message>
        <source>PRERUSENIA</source>
        <translation>INTERRUPTIONS</translation>
    </message>
</context>
<context>
    <name>MonthlyAttenReport</name>
    <message>
        <source>Mesačný report dochádzky za %1 / %2</source>
        <translation>Monthly attendance report of %1 / %2</translation>
    </message>
    <message>
        <source>Mesačný report dochádzky sa nachádza v prílohe.


Tento e-mail bol vygenerovaný automaticky dochádzkovým systémom ZAS.</source>
        <translation>The monthly attendance report is attached.


This mail was generated automatically by the attendance system ZAS.</translation>
    </message>
    <message>
        <source>PamID</source>
        <translation>PamID</translation>
    </message>
    <message>
        <source>ID</source>
        <translation>ID</translation>
    </message>
    <message>
        <source>Priezvisko a meno</source>
        <translation>Surname and name</translation>
    </message>
    <message>
        <source>Plánovaný mesačný fond</source>
        <translation>Planned hours of the month</translation>
    </message>
    <message>
        <source>Dovolenka</source>
        <translation>Holiday leave</translation>
    </message>
    <message>
        <source>Lekár</source>
        <translation>Doctor</translation>
    </message>
    <message>
        <source>PN</source>
        <translation>Sick leave</translation>
    </message>
    <message>
        <source>Paragraf</source>
        <translation>Paid absence</translation>
    </message>
    <message>
        <source>OČR</source>
        <translation>Family care</translation>
    </message>
    <message>
        <source>NV</source>
        <translation>Time off in lieu</translation>
    </message>
    <message>
        <source>Nadčas</source>
        <translation>Overtime</translation>
    </message>
    <message>
        <source>Skutočne odpracované hodiny</source>
        <translation>Hours worked</translation>
    </message>
    <message>
        <source>Rozdiel</source>
        <translation>Difference</translation>
    </message>
    <message>
        <source>Odpracované hodiny v %</source>
        <translation>Hours worked in %</translation>
    </message>
    <message>
        <source>Navrhnuté prémie</source>
        <translation>Proposed bonus</translation>
    </message>
    <message>
        <source>Výsledné prémie</source>
        <translation>Final bonus</translation>
    </message>
    <message>
        <source>Sviatok</source>
        <translation>Public holiday</translation>
    </message>
    <message>
        <source>Odpracovaný sviatok</source>
        <translation>Public holiday worked</translation>
    </message>
    <message>
        <source>Príplatkový čas</source>
        <translation>Time with extra pay</translation>
    </message>
    <message>
        <source>Sobota</source>
        <translation>Saturday</translation>
    </message>
    <message>
        <source>Nedeľa</source>
        <translation>Sunday</translation>
    </message>
    <message>
        <source>Nočná</source>
        <translation>Night</translation>
    </message>
    <message>
        <source>Stravné j.</source>
        <translation>Meal vouchers</translation>
    </message>
</context>
<context>
    <name>ZAS</name>
    <message>
        <source>minúta</source>
        <translation>minute</translation>
    </message>
    <message>
        <source>5 minút</source>
        <translation>5 minutes</translation>
    </message>
    <message>
        <source>15 minút</source>
        <translation>15 minutes</translation>
    </message>
    <message>
        <source>30 minút</source>
        <translation>30 minutes</translation>
    </message>
    <message>
        <source>hodina</source>
        <translation>hour</translation>
    </message>
    <message>
        <source>bez zaokrúhľovania</source>
        <translation>no rounding</translation>
    </message>
</context>
</TS>
