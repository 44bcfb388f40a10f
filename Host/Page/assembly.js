// The page works without this script, which adds a filter and opens the file that a link points to.
const form = document.querySelector('.filter');
const input = form.querySelector('input');
const output = form.querySelector('output');
const files = Array.from(document.querySelectorAll('.file'));
const boxes = Array.from(document.querySelectorAll('.box')).reverse();
const names = files.map(function (file) { return file.querySelector('summary').textContent.toLowerCase(); });

function filter() {
  const wanted = input.value.trim().toLowerCase();
  let shown = 0;
  files.forEach(function (file, place) {
    file.hidden = !names[place].includes(wanted);
    shown += file.hidden ? 0 : 1;
  });
  // The boxes are reversed, so inner ones come first.
  for (const box of boxes)
    box.hidden = wanted !== '' ? !box.querySelector('.file:not([hidden])') : false;
  output.textContent = shown + ' of ' + files.length + ' files';
}

function openTarget(hash) {
  const target = document.getElementById(hash.slice(1));
  if (target instanceof HTMLDetailsElement) {
    if (target.hidden) {
      input.value = '';
      filter();
    }
    target.open = true;
    target.scrollIntoView({ block: 'center' });
  }
}

form.hidden = false;
form.addEventListener('submit', function (event) { event.preventDefault(); });
input.addEventListener('input', filter);
// Also where the address stays the same.
document.addEventListener('click', function (event) {
  const link = event.target.closest('a[href^="#f"]');
  if (link)
    openTarget(link.hash);
});
window.addEventListener('hashchange', function () { openTarget(location.hash); });
filter();
openTarget(location.hash);
