
"use strict";
// The sort order is part of the address, so that it can be bookmarked: #sort=last, or #sort=-last
// for descending order.
function sort() {
  const [, back, key] = /^#sort=(-?)([a-z]+)$/.exec(location.hash) || [];
  const links = [...document.querySelectorAll("thead a")];
  const chosen = links.find(link => link.dataset.key === key);
  if (!chosen) return;
  const value = row => row.dataset[key];
  const compare = (a, b) => isNaN(value(a)) || isNaN(value(b))
    ? value(a).localeCompare(value(b)) : value(a) - value(b);
  const body = document.querySelector("tbody");
  const rows = [...body.rows].sort((a, b) => back ? compare(b, a) : compare(a, b));
  body.append(...rows);
  for (const link of links) {
    link.parentElement.removeAttribute("aria-sort");
    link.setAttribute("href", "#sort=" + link.dataset.key);
  }
  chosen.parentElement.setAttribute("aria-sort", back ? "descending" : "ascending");
  chosen.setAttribute("href", "#sort=" + (back ? "" : "-") + key);
}
for (const link of document.querySelectorAll("thead a")) link.dataset.key = link.hash.slice(6);
addEventListener("hashchange", sort);
sort();
